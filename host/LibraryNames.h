/// How libraries are called on this platform.
#pragma once

#include <filesystem>

namespace host {

/// The backend library, as the module names it.
extern const char* const backendLibraryName;

/// The module that was installed or built along with this program.
/// @param folder the program's own
std::filesystem::path moduleBeside(const std::filesystem::path& folder);

} // namespace host
