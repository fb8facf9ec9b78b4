/// The names that a loaded library exports.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace msvc {

/// Refers to the library, which must stay loaded.
class ExportNames {
public:
    /// @param library as `LoadLibrary` returns it
    explicit ExportNames(const void* library);

    /// The first name that begins and ends so; empty if there is none.
    std::string find(std::string_view beginning, std::string_view end) const;

private:
    std::vector<std::string_view> names;
};

} // namespace msvc
