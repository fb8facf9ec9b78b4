#include "host/LibraryNames.h"

#include <system_error>

namespace host {

const char* const backendLibraryName = "libkes_wren_api.so";
const char* const otherTableExport = nullptr;

std::filesystem::path moduleBeside(const std::filesystem::path& folder) {
    constexpr const char* name = "libkes_wren_presentation_plugin.so";
    const std::filesystem::path libraries = folder.parent_path() / "lib";
    const std::filesystem::path installed = libraries / "wren-gate" / name;
    std::error_code none;
    return std::filesystem::exists(installed, none) ? installed : libraries / name;
}

} // namespace host
