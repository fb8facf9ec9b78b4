#include "host/system/Detour_win.h"

#include "host/HostError.h"

#include <cstdint>
#include <cstring>
#include <string>

namespace host {

Detour::Detour(const wchar_t* library, const char* function, void* replacement)
    : target(reinterpret_cast<unsigned char*>(
          reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryW(library), function))))
    , before{} {
    const std::string failure = std::string("cannot stand in for the system's ") + function;
    if (target == nullptr) {
        throw HostError(failure);
    }
    std::memcpy(before.data(), target, before.size());
    Code jump{0xE9};
    const auto distance = static_cast<unsigned char*>(replacement) - (target + jump.size());
    static_assert(sizeof distance == 4, "a jump of this form reaches all of a 32-bit process");
    std::memcpy(jump.data() + 1, &distance, sizeof distance);
    if (!write(jump)) {
        throw HostError(failure);
    }
}

Detour::~Detour() { write(before); }

bool Detour::write(const Code& code) const {
    DWORD protection = 0;
    if (!::VirtualProtect(target, code.size(), PAGE_EXECUTE_READWRITE, &protection)) {
        return false;
    }
    std::memcpy(target, code.data(), code.size());
    ::VirtualProtect(target, code.size(), protection, &protection);
    return ::FlushInstructionCache(::GetCurrentProcess(), target, code.size()) != 0;
}

} // namespace host
