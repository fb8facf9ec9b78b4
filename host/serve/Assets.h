/// The files that the server hands out.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace host::serve {

/// One file.
struct Asset {
    std::filesystem::path file;
    std::string_view type; ///< for the header "Content-Type", in static storage
};

/// The files below `app` and `pages` in one folder, each under its path there, such as "app/index.html". They
/// are listed once: nothing else can be asked for, whatever a name says. Immutable.
class Assets {
public:
    /// Lists the files. Of hidden ones, links and files of an unknown kind there are none.
    explicit Assets(const std::filesystem::path& folder);

    /// @return null for a name that is not listed
    const Asset* find(std::string_view name) const;

private:
    std::map<std::string, Asset, std::less<>> assets;
};

/// The folder that belongs to this program: ../share/wren-host, seen from it.
std::filesystem::path defaultAssetFolder();

} // namespace host::serve
