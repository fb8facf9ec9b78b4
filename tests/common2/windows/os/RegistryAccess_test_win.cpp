#include "common2/device/DeviceDetail.h"
#include "common2/device/VantorDeviceID.h"
#include "common2/tessel/TesselSandpiperId.h"
#include "common2/util/WideText.h"
#include "host/system/Detour_win.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <cstdio>

// Which of the registry's values are read, where, and with which access: on 64-bit Windows the access decides
// which of two sets of settings is read.

namespace {

using Reads = std::vector<std::string>;

Reads reads;
std::string openedKey;
std::string missingKey; ///< which cannot be opened
constexpr USHORT systemsOfBothKinds[] = {IMAGE_FILE_MACHINE_AMD64, IMAGE_FILE_MACHINE_I386};
USHORT systemsMachine = IMAGE_FILE_MACHINE_UNKNOWN;

LSTATUS WINAPI openAnyKey(HKEY root, LPCWSTR path, DWORD, REGSAM access, PHKEY key) {
    EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
    char hexadecimal[16];
    std::snprintf(hexadecimal, sizeof hexadecimal, "0x%lX", access);
    openedKey = common2::toUtf8(path) + " " + hexadecimal;
    *key = reinterpret_cast<HKEY>(&openedKey);
    if (openedKey.starts_with(missingKey) && !missingKey.empty()) {
        reads.push_back(openedKey);
        return ERROR_FILE_NOT_FOUND;
    }
    return ERROR_SUCCESS;
}

/// Every value is there and one byte long.
LSTATUS WINAPI tellAnyValue(HKEY, LPCWSTR name, LPDWORD, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (data == nullptr) {
        reads.push_back(openedKey + " " + common2::toUtf8(name));
    } else {
        *data = 1;
    }
    *type = REG_BINARY;
    *size = 1;
    return ERROR_SUCCESS;
}

LSTATUS WINAPI closeAnyKey(HKEY) { return ERROR_SUCCESS; }

BOOL WINAPI tellSystemsMachine(HANDLE, USHORT* process, USHORT* native) {
    *process = IMAGE_FILE_MACHINE_UNKNOWN;
    *native = systemsMachine;
    return TRUE;
}

class RegistryAccess : public testing::Test {
protected:
    RegistryAccess() {
        reads.clear();
        missingKey.clear();
        systemsMachine = IMAGE_FILE_MACHINE_AMD64;
    }

private:
    const test::LogCapture capture; // keeps the lines about values of another type to itself
    const host::Detour machine{L"kernel32.dll", "IsWow64Process2",
                               reinterpret_cast<void*>(&tellSystemsMachine)};
    const host::Detour opening{L"advapi32.dll", "RegOpenKeyExW", reinterpret_cast<void*>(&openAnyKey)};
    const host::Detour asking{L"advapi32.dll", "RegQueryValueExW", reinterpret_cast<void*>(&tellAnyValue)};
    const host::Detour closing{L"advapi32.dll", "RegCloseKey", reinterpret_cast<void*>(&closeAnyKey)};
};

TEST_F(RegistryAccess, CachedDetailsAreReadPlainly) {
    VantorDeviceID::Details details;
    EXPECT_TRUE(VantorDeviceID().getDeviceDetailsFromCache(details));
    EXPECT_EQ(reads,
              (Reads{R"(Software\Norvane\Norvane Kestrel Suite\DeviceDetails 0x20019 Sid)",
                     R"(Software\Norvane\Norvane Kestrel Suite\DeviceDetails 0x20019 DigitalProductId)",
                     R"(Software\Norvane\Norvane Kestrel Suite\DeviceDetails 0x20019 DigitalProductId4)"}));
}

TEST_F(RegistryAccess, NonceIsReadPlainly) {
    VantorDeviceID::Bytes nonce;
    EXPECT_FALSE(VantorDeviceID().getUDIDNonceFromRegistryKey(nonce));
    EXPECT_EQ(reads, Reads{R"(Software\Norvane\Norvane Kestrel Suite\DeviceDetails 0x20019 Nonce)"});
}

/// What is read of Windows' own values.
Reads readProductIds() {
    reads.clear();
    VantorDeviceID::Bytes bytes;
    EXPECT_TRUE(common2::readDeviceDetail(L"DigitalProductId", bytes));
    EXPECT_TRUE(common2::readDeviceDetail(L"DigitalProductId4", bytes));
    return reads;
}

TEST_F(RegistryAccess, ProductIdsAreThoseOfTheSystemItself) {
    EXPECT_EQ(readProductIds(),
              (Reads{R"(Software\Microsoft\Windows NT\CurrentVersion 0x20119 DigitalProductId)",
                     R"(Software\Microsoft\Windows NT\CurrentVersion 0x20119 DigitalProductId4)"}));
    systemsMachine = IMAGE_FILE_MACHINE_I386;
    EXPECT_EQ(readProductIds(),
              (Reads{R"(Software\Microsoft\Windows NT\CurrentVersion 0x20019 DigitalProductId)",
                     R"(Software\Microsoft\Windows NT\CurrentVersion 0x20019 DigitalProductId4)"}));
}

TEST_F(RegistryAccess, BinaryValueIsReadAsItsReaderAsks) {
    VantorDeviceID::Bytes bytes;
    for (const USHORT native : systemsOfBothKinds) {
        systemsMachine = native;
        EXPECT_TRUE(VantorDeviceID::getBinaryRegistryKey(L"Software\\Maker", L"Value", true, bytes));
        EXPECT_TRUE(VantorDeviceID::getBinaryRegistryKey(L"Software\\Maker", L"Value", false, bytes));
    }
    EXPECT_EQ(reads, (Reads{R"(Software\Maker 0x20119 Value)", R"(Software\Maker 0x20019 Value)",
                            R"(Software\Maker 0x20019 Value)", R"(Software\Maker 0x20019 Value)"}));
}

TEST_F(RegistryAccess, MachineIdIsThatOfTheSystemItself) {
    std::string id;
    for (const USHORT native : systemsOfBothKinds) {
        SCOPED_TRACE(native);
        systemsMachine = native;
        reads.clear();
        missingKey.clear();
        EXPECT_TRUE(TesselSandpiperId::IdentifySpMachineId(id));
        EXPECT_EQ(
            reads,
            Reads{R"(SOFTWARE\Norvane\Norvane Kestrel Suite\Sandpiper Endpoint Agent 0x20119 MachineId)"});
        reads.clear();
        missingKey = R"(SOFTWARE\Norvane\)";
        EXPECT_TRUE(TesselSandpiperId::IdentifySpMachineId(id));
        EXPECT_EQ(reads, (Reads{R"(SOFTWARE\Norvane\Norvane Kestrel Suite\Sandpiper Endpoint Agent 0x20119)",
                                R"(SOFTWARE\Sandpiper\Endpoint Agent 0x20119 MachineId)"}));
    }
}

} // namespace
