#include "host/LibraryNames.h"

namespace host {

const char* const backendLibraryName = "libkes_wren_api.so";

std::filesystem::path moduleBeside(const std::filesystem::path& folder) {
    return folder.parent_path() / "lib" / "libkes_wren_presentation_plugin.so";
}

} // namespace host
