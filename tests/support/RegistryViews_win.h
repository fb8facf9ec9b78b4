/// The registry's two sets of settings.
#pragma once

#include <windows.h>

namespace test {

/// Whether programs of 32 bits, such as this one, have a set of settings of their own: so on Windows of 64
/// bits.
inline bool hasTwoViews() {
    BOOL isOn64Bits = FALSE;
    return ::IsWow64Process(::GetCurrentProcess(), &isOn64Bits) && isOn64Bits;
}

} // namespace test
