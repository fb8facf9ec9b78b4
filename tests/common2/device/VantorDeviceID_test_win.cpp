#include "common2/device/VantorDeviceID.h"

#include "tests/support/MachineSettings.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

constexpr const wchar_t* detailsKey = L"Software\\Norvane\\Norvane Kestrel Suite\\DeviceDetails";

struct StoredNonce {
    DWORD type;
    std::string bytes;
    bool counts;
};

const StoredNonce storedNonces[] = {
    {REG_BINARY, std::string("\x01\x00\xFF\x02", 4), true},
    {REG_DWORD, std::string("\x01\x00\xFF\x02", 4), true},
    {REG_SZ, std::string("x\0\0\0", 4), true},
    {REG_NONE, "n0ce", true},
    {REG_BINARY, "123", false},
    {REG_BINARY, "12345", false},
    {REG_DWORD, "123", false},
    {REG_DWORD, "12345", false},
    {REG_SZ, std::string("x\0y\0\0\0", 6), false},
    {REG_SZ, std::string("\0\0", 2), false},
    {REG_QWORD, "12345678", false},
};

bool readNoDetail(const std::wstring&, VantorDeviceID::Bytes&) { return false; }

TEST(StoredNonces, FourBytesCountWhateverTheirType) {
    for (const StoredNonce& nonce : storedNonces) {
        SCOPED_TRACE(testing::Message() << "type " << nonce.type << ", " << nonce.bytes.size() << " bytes");
        const test::MachineSettings settings;
        settings.setBytes("Norvane/Norvane Kestrel Suite/DeviceDetails", "Sid", "sid");
        ASSERT_EQ(::RegSetKeyValueW(HKEY_LOCAL_MACHINE, detailsKey, L"Nonce", nonce.type, nonce.bytes.data(),
                                    static_cast<DWORD>(nonce.bytes.size())),
                  ERROR_SUCCESS);
        VantorDeviceID::Bytes id;
        EXPECT_FALSE(VantorDeviceID(readNoDetail).GetDeviceID(id));
        EXPECT_EQ(std::string(id.begin(), id.end()), (nonce.counts ? nonce.bytes : "") + "sid");
    }
}

} // namespace
