#include "host/LibraryNames.h"

namespace host {

const char* const backendLibraryName = "kes_wren_api.dll";
const char* const otherTableExport = "_ZN6PluginD0Ev"; // GCC's second slot for the destructor

std::filesystem::path moduleBeside(const std::filesystem::path& folder) {
    return folder / "kes_wren_presentation_plugin.dll";
}

} // namespace host
