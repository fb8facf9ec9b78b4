#include "tests/module/load-loop/LoopSystem.h"

#include <windows.h>

namespace test {

// A lock of the program or of the stand-in makes its event when two threads first meet there.
const std::size_t allowedFiles = 16;

bool moduleIsLoaded() { return ::GetModuleHandleW(L"kes_wren_presentation_plugin.dll") != nullptr; }

} // namespace test
