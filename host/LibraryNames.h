/// How libraries are called on this platform.
#pragma once

#include <filesystem>

namespace host {

/// The backend library, as the module names it.
extern const char* const backendLibraryName;

/// What only those modules export whose class has a table that this platform's hosts can't use; null where
/// there is no such table.
extern const char* const otherTableExport;

/// The module that was installed or built along with this program.
/// @param folder the program's own
std::filesystem::path moduleBeside(const std::filesystem::path& folder);

} // namespace host
