#include "common2/windows/os/RegistryKey.h"

#include "host/system/Detour_win.h"
#include "tests/support/MachineSettings.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

using Bytes = std::vector<unsigned char>;

class RegistryTest : public testing::Test {
protected:
    /// Puts a value of any type and form where `key` finds it.
    void set(DWORD type, const void* data, DWORD size) {
        settings.setBytes("Maker", "Other", "");
        HKEY opened = nullptr;
        ASSERT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Maker", 0, KEY_WRITE, &opened),
                  ERROR_SUCCESS);
        EXPECT_EQ(::RegSetValueExW(opened, L"Value", 0, type, static_cast<const BYTE*>(data), size),
                  ERROR_SUCCESS);
        ::RegCloseKey(opened);
        ASSERT_EQ(key.Open(L"Software\\Maker", RegistryKey::readAccess), 0u);
    }

    test::MachineSettings settings;
    RegistryKey key;
};

TEST_F(RegistryTest, ValueOfAnotherTypeIsInvalid) {
    set(REG_SZ, L"text", 10);
    Bytes bytes{1};
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), unsigned{ERROR_INVALID_DATA});
    EXPECT_EQ(bytes, Bytes());
    set(REG_BINARY, "bytes", 5);
    std::string text = "stale";
    EXPECT_EQ(key.QueryStringValue(L"Value", text), unsigned{ERROR_INVALID_DATA});
    EXPECT_EQ(text, "");
}

TEST_F(RegistryTest, TextNeedsNoNulAtItsEnd) {
    set(REG_SZ, L"text", 8);
    std::string text;
    EXPECT_EQ(key.QueryStringValue(L"Value", text), 0u);
    EXPECT_EQ(text, "text");
}

TEST_F(RegistryTest, HalfAUnitAtTheEndOfATextIsDropped) {
    set(REG_SZ, L"text", 7);
    std::string text;
    EXPECT_EQ(key.QueryStringValue(L"Value", text), 0u);
    EXPECT_EQ(text, "tex");
}

TEST_F(RegistryTest, TextOfSizeZeroIsEmpty) {
    set(REG_SZ, L"", 0);
    std::string text = "stale";
    EXPECT_EQ(key.QueryStringValue(L"Value", text), 0u);
    EXPECT_EQ(text, "");
}

REGSAM askedAccess = 0;
HKEY askedRoot = nullptr;

LSTATUS WINAPI keepOpenQuestion(HKEY root, LPCWSTR, DWORD, REGSAM access, PHKEY) {
    askedRoot = root;
    askedAccess = access;
    return ERROR_ACCESS_DENIED;
}

TEST_F(RegistryTest, KeyIsOpenedBelowTheLocalMachineWithTheAccessGiven) {
    const host::Detour detour(L"advapi32.dll", "RegOpenKeyExW", reinterpret_cast<void*>(&keepOpenQuestion));
    for (const std::uint32_t access : {RegistryKey::readAccess, RegistryKey::readAccessOf64Bit}) {
        EXPECT_EQ(key.Open(L"Software\\Maker", access), unsigned{ERROR_ACCESS_DENIED});
        EXPECT_EQ(askedAccess, access);
        EXPECT_EQ(askedRoot, HKEY_LOCAL_MACHINE);
    }
}

} // namespace
