#include "common2/util/OsVerApi.h"

#include "common2/util/WideText.h"

#include <windows.h>

namespace {

constexpr USHORT noMachine = 0; ///< IMAGE_FILE_MACHINE_UNKNOWN
constexpr USHORT arm64Machine = 0xAA64;
constexpr USHORT amd64Machine = 0x8664;

/// The machine of a system that is too old to name it: before Windows 10, a 32-bit process that runs on
/// another system than its own runs on this one.
USHORT olderNativeMachine() {
    BOOL isOn64Bits = FALSE;
    return ::IsWow64Process(::GetCurrentProcess(), &isOn64Bits) && isOn64Bits ? amd64Machine : noMachine;
}

/// The system's machine, by IMAGE_FILE_MACHINE; `noMachine` if it has 32 bits and is too old to name it.
USHORT nativeMachine() {
    using IsWow64Process2 = BOOL(WINAPI*)(HANDLE, USHORT*, USHORT*);
    const HMODULE kernel = ::GetModuleHandleW(L"kernel32.dll");
    // The way around a function pointer type is the compiler's, which knows nothing of late binding.
    const auto function = kernel ? reinterpret_cast<IsWow64Process2>(
                                       reinterpret_cast<void*>(::GetProcAddress(kernel, "IsWow64Process2")))
                                 : nullptr;
    USHORT process = noMachine;
    USHORT native = noMachine;
    return function && function(::GetCurrentProcess(), &process, &native) ? native : olderNativeMachine();
}

} // namespace

OsVerApi::OsVerApi() {
    version.type = nativeMachine() == arm64Machine ? MYOSVER_OS::WinArm64 : MYOSVER_OS::Win;
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&info))) {
        version.major = static_cast<int>(info.dwMajorVersion);
        version.minor = static_cast<int>(info.dwMinorVersion);
        version.build = static_cast<int>(info.dwBuildNumber);
        version.further = common2::toUtf8(info.szCSDVersion);
        version.family = "Windows";
    }
}

bool OsVerApi::Is64BitSystem() {
    const USHORT machine = nativeMachine();
    return machine == arm64Machine || machine == amd64Machine;
}
