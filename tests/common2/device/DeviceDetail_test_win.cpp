#include "common2/device/DeviceDetail.h"

#include "host/system/Detour_win.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RegistryViews_win.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

using Bytes = std::vector<unsigned char>;
using Lines = std::vector<std::string>;

// The machine's account, as the system tells of it.
DWORD firstError = ERROR_INSUFFICIENT_BUFFER;
bool isSecondDone = true;
const unsigned char machineSid[] = {1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0};

BOOL WINAPI tellAccount(LPCWSTR system, LPCWSTR name, PSID sid, LPDWORD sidSize, LPWSTR, LPDWORD domainSize,
                        PSID_NAME_USE) {
    EXPECT_EQ(system, nullptr);
    EXPECT_NE(*name, L'\0');
    if (sid == nullptr) {
        *sidSize = sizeof machineSid;
        *domainSize = 8;
        ::SetLastError(firstError);
        return FALSE;
    }
    EXPECT_EQ(*sidSize, sizeof machineSid);
    EXPECT_EQ(*domainSize, 8u);
    std::copy(std::begin(machineSid), std::end(machineSid), static_cast<unsigned char*>(sid));
    ::SetLastError(isSecondDone ? ERROR_SUCCESS : ERROR_NONE_MAPPED);
    return isSecondDone;
}

BOOL WINAPI tellNoName(LPWSTR, LPDWORD) {
    ::SetLastError(ERROR_NOACCESS);
    return FALSE;
}

BOOL WINAPI findNothingValid(PSID) { return FALSE; }

class MachineSid : public testing::Test {
protected:
    MachineSid() {
        firstError = ERROR_INSUFFICIENT_BUFFER;
        isSecondDone = true;
    }

    void expectFailure(const Lines& messages) {
        capture.clear();
        Bytes bytes{1};
        EXPECT_FALSE(common2::readDeviceDetail(L"Sid", bytes));
        EXPECT_EQ(bytes, Bytes());
        EXPECT_EQ(capture.messages(), messages);
    }

    const host::Detour account{L"advapi32.dll", "LookupAccountNameW", reinterpret_cast<void*>(&tellAccount)};
    test::LogCapture capture;
};

TEST_F(MachineSid, IsThatOfTheComputersAccount) {
    Bytes bytes;
    EXPECT_TRUE(common2::readDeviceDetail(L"Sid", bytes));
    EXPECT_EQ(bytes, Bytes(std::begin(machineSid), std::end(machineSid)));
    EXPECT_EQ(capture.messages(), Lines());
}

TEST_F(MachineSid, WithoutAComputerNameThereIsNone) {
    const host::Detour name(L"kernel32.dll", "GetComputerNameW", reinterpret_cast<void*>(&tellNoName));
    expectFailure({"::GetComputerName failed with err 998"});
}

TEST_F(MachineSid, EachCallForTheAccountMayFail) {
    firstError = ERROR_NONE_MAPPED;
    expectFailure({"::LookupAccountName first failed with err 1332"});
    firstError = ERROR_INSUFFICIENT_BUFFER;
    isSecondDone = false;
    expectFailure({"::LookupAccountName second failed with err 1332"});
}

TEST_F(MachineSid, WhatIsNoValidSidIsRefused) {
    const host::Detour valid(L"advapi32.dll", "IsValidSid", reinterpret_cast<void*>(&findNothingValid));
    expectFailure({"GetDeviceID->IsValidSid() sid is NOT valid "});
}

constexpr const wchar_t* windowsKey = L"Software\\Microsoft\\Windows NT\\CurrentVersion";

/// A value among Windows' own settings, in one of its two sets.
class ProductId {
public:
    explicit ProductId(REGSAM view) {
        EXPECT_EQ(::RegOpenKeyExW(HKEY_LOCAL_MACHINE, windowsKey, 0, KEY_WRITE | view, &key), ERROR_SUCCESS);
        const BYTE id[] = {1, 0, 255};
        ::RegSetValueExW(key, L"DigitalProductId4", 0, REG_BINARY, id, sizeof id);
    }
    ProductId(const ProductId&) = delete;
    ProductId& operator=(const ProductId&) = delete;
    ~ProductId() {
        ::RegDeleteValueW(key, L"DigitalProductId4");
        ::RegCloseKey(key);
    }

private:
    HKEY key = nullptr;
};

class ProductIds : public testing::Test {
protected:
    void expectNone() {
        capture.clear();
        Bytes bytes{1};
        EXPECT_FALSE(common2::readDeviceDetail(L"DigitalProductId4", bytes));
        EXPECT_EQ(bytes, Bytes());
        EXPECT_EQ(capture.messages(), Lines{"CRegKey::QueryBinaryValue returned error 2"});
    }
    static void expectId() {
        Bytes bytes;
        EXPECT_TRUE(common2::readDeviceDetail(L"DigitalProductId4", bytes));
        EXPECT_EQ(bytes, (Bytes{1, 0, 255}));
    }

    test::LogCapture capture;
};

TEST_F(ProductIds, AreThoseOfASystemOf64Bits) {
    if (test::hasTwoViews()) {
        const ProductId foreign(KEY_WOW64_32KEY);
        expectNone();
    }
    const ProductId own(KEY_WOW64_64KEY);
    expectId();
}

BOOL WINAPI tellX86(HANDLE, USHORT* process, USHORT* native) {
    *process = IMAGE_FILE_MACHINE_UNKNOWN;
    *native = IMAGE_FILE_MACHINE_I386;
    return TRUE;
}

TEST_F(ProductIds, AreReadPlainlyWhereTheSystemHas32Bits) {
    const host::Detour detour(L"kernel32.dll", "IsWow64Process2", reinterpret_cast<void*>(&tellX86));
    if (test::hasTwoViews()) { // where a plain access leads to the set for programs of 32 bits
        const ProductId foreign(KEY_WOW64_64KEY);
        expectNone();
    }
    const ProductId own(KEY_WOW64_32KEY);
    expectId();
}

TEST_F(ProductIds, ThatAreMissingAreLogged) { expectNone(); }

} // namespace
