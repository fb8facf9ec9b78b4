/// A temporary folder.
#pragma once

#include <filesystem>
#include <string>

namespace host {

/// An empty folder that nobody else may look into. It goes with the object, and all that is in it.
class PrivateFolder {
public:
    /// @param purpose begins its name
    /// @throws HostError where it cannot be made
    explicit PrivateFolder(const std::string& purpose);
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder();

    const std::filesystem::path& path() const noexcept { return folder; }

private:
    std::filesystem::path folder;
};

} // namespace host
