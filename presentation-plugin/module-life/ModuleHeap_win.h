/// The module's own heap, which goes with it.
#pragma once

#include <windows.h>

namespace moduleLife {

/// Made by the first call, which is the loader's; no other thread runs in the module then.
/// @return null where there is no memory
HANDLE moduleHeap();

/// Gives back all of it. Nothing of the module may run afterwards.
void destroyModuleHeap();

} // namespace moduleLife
