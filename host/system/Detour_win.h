/// A function of the system as this process has it.
#pragma once

#include <windows.h>

#include <array>

namespace host {

/// While it exists, calls of a system function end up in another one, from all modules of this process. It
/// replaces the function's first bytes: the program is linked into no module, so that it can't supply the
/// function in another way. Nobody may be inside the function at either end of this object's life.
class Detour {
public:
    /// @param library such as L"advapi32.dll"; stays loaded
    /// @param replacement a function of the same type
    /// @throws HostError where there is no such function, or it cannot be replaced
    Detour(const wchar_t* library, const char* function, void* replacement);
    Detour(const Detour&) = delete;
    Detour& operator=(const Detour&) = delete;
    ~Detour();

private:
    using Code = std::array<unsigned char, 5>;

    bool write(const Code& code) const;

    unsigned char* target;
    Code before;
};

} // namespace host
