#include "common2/util/OsVerApi.h"

#include "host/system/Detour_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cwchar>

namespace {

USHORT machine = 0;
bool isTold = true;

BOOL WINAPI tellMachine(HANDLE, USHORT* process, USHORT* native) {
    *process = 0x14C;
    *native = machine;
    return isTold;
}

BOOL WINAPI tellVersion(OSVERSIONINFOW* info) {
    EXPECT_EQ(info->dwOSVersionInfoSize, sizeof(OSVERSIONINFOEXW));
    info->dwMajorVersion = 6;
    info->dwMinorVersion = 1;
    info->dwBuildNumber = 7601;
    std::wcscpy(info->szCSDVersion, L"Service Pack 1");
    return TRUE;
}

BOOL WINAPI tellNoVersion(OSVERSIONINFOW*) { return FALSE; }

int typeOn(USHORT native) {
    machine = native;
    return static_cast<int>(OsVerApi().GetType());
}

TEST(OsVerApi, MachineDecidesTheType) {
    const host::Detour detour(L"kernel32.dll", "IsWow64Process2", reinterpret_cast<void*>(&tellMachine));
    EXPECT_EQ(typeOn(0x14C), 1);
    EXPECT_EQ(typeOn(0x8664), 1);
    EXPECT_EQ(typeOn(0xAA64), 2);
    isTold = false;
    EXPECT_EQ(typeOn(0xAA64), 1);
    isTold = true;
}

TEST(OsVerApi, MachineDecidesWhetherTheSystemHas64Bits) {
    const host::Detour detour(L"kernel32.dll", "IsWow64Process2", reinterpret_cast<void*>(&tellMachine));
    for (const auto& [native, is64Bit] : {std::pair{0x14C, false}, {0x8664, true}, {0xAA64, true}}) {
        machine = static_cast<USHORT>(native);
        EXPECT_EQ(OsVerApi::Is64BitSystem(), is64Bit) << native;
    }
}

BOOL isOn64Bits = FALSE;

BOOL WINAPI tellWow64(HANDLE, BOOL* isWow64) {
    *isWow64 = isOn64Bits;
    return TRUE;
}

TEST(OsVerApi, SystemThatNamesNoMachineHas64BitsIfItRuns32BitProcessesBeside) {
    const host::Detour newer(L"kernel32.dll", "IsWow64Process2", reinterpret_cast<void*>(&tellMachine));
    const host::Detour older(L"kernel32.dll", "IsWow64Process", reinterpret_cast<void*>(&tellWow64));
    isTold = false;
    for (const BOOL answer : {TRUE, FALSE}) {
        isOn64Bits = answer;
        EXPECT_EQ(OsVerApi::Is64BitSystem(), answer != FALSE);
        EXPECT_EQ(typeOn(0xAA64), 1);
    }
    isTold = true;
}

TEST(OsVerApi, VersionIsTheSystems) {
    const host::Detour detour(L"kernel32.dll", "GetVersionExW", reinterpret_cast<void*>(&tellVersion));
    const OsVerApi system;
    EXPECT_EQ(system.GetVersionText(), "6.1.7601 Service Pack 1");
    EXPECT_STREQ(system.GetFamilyName(), "Windows");
}

TEST(OsVerApi, FamilyIsUnknownWhereTheSystemTellsNoVersion) {
    const host::Detour detour(L"kernel32.dll", "GetVersionExW", reinterpret_cast<void*>(&tellNoVersion));
    const OsVerApi system;
    EXPECT_EQ(system.GetVersionText(), "0.0.0");
    EXPECT_STREQ(system.GetFamilyName(), "Unknown");
}

TEST(OsVerApi, ReadsTheRunningSystem) {
    const OsVerApi system;
    EXPECT_STREQ(system.GetFamilyName(), "Windows");
    EXPECT_NE(system.GetVersionText(), "0.0.0");
}

} // namespace
