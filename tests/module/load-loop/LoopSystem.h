/// What the loop has to know of its system.
#pragma once

#include <cstddef>

namespace test {

/// Whether something of the module is still in the process. On Linux the stand-in service counts, too; on
/// Windows it stays until the process ends.
bool moduleIsLoaded();

/// What the process itself may open during all rounds.
extern const std::size_t allowedFiles;

} // namespace test
