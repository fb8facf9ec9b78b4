#include "common2/windows/os/RegistryKey.h"

#include "tests/support/MachineSettings.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr unsigned notFound = 2; ///< on every system

class RegistryKeyTest : public testing::Test {
protected:
    test::MachineSettings settings;
    RegistryKey key;
};

TEST_F(RegistryKeyTest, AccessMasks) {
    EXPECT_EQ(RegistryKey::readAccess, 0x20019u);
    EXPECT_EQ(RegistryKey::readAccessOf64Bit, 0x20119u);
}

TEST_F(RegistryKeyTest, ValueOfBytesComesAsItIs) {
    settings.setBytes("Maker/Product", "Value", std::string_view("\0\xFFz", 3));
    for (const wchar_t* path : {L"Software\\Maker\\Product", L"SOFTWARE\\Maker\\Product"}) {
        for (const std::uint32_t access : {RegistryKey::readAccess, RegistryKey::readAccessOf64Bit}) {
            ASSERT_EQ(key.Open(path, access), 0u);
            Bytes bytes;
            EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), 0u);
            EXPECT_EQ(bytes, (Bytes{0, 0xFF, 'z'}));
        }
    }
}

TEST_F(RegistryKeyTest, TextComesInUtf8) {
    settings.setText("Maker", "Value", "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC");
    ASSERT_EQ(key.Open(L"Software\\Maker", RegistryKey::readAccess), 0u);
    std::string text;
    EXPECT_EQ(key.QueryStringValue(L"Value", text), 0u);
    EXPECT_EQ(text, "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC");
}

TEST_F(RegistryKeyTest, MissingKeyIsNotFoundAndStaysClosed) {
    EXPECT_EQ(key.Open(L"Software\\Maker", RegistryKey::readAccess), notFound);
    Bytes bytes{1};
    EXPECT_NE(key.QueryBinaryValue(L"Value", bytes), 0u);
    EXPECT_EQ(bytes, Bytes());
}

TEST_F(RegistryKeyTest, MissingValueIsNotFound) {
    settings.setBytes("Maker", "Other", "x");
    ASSERT_EQ(key.Open(L"Software\\Maker", RegistryKey::readAccess), 0u);
    Bytes bytes{1};
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), notFound);
    EXPECT_EQ(bytes, Bytes());
    std::string text = "stale";
    EXPECT_EQ(key.QueryStringValue(L"Value", text), notFound);
    EXPECT_EQ(text, "");
}

TEST_F(RegistryKeyTest, EmptyValueHasSizeZero) {
    settings.setBytes("Maker", "Value", "");
    ASSERT_EQ(key.Open(L"Software\\Maker", RegistryKey::readAccess), 0u);
    Bytes bytes{1};
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), 0u);
    EXPECT_EQ(bytes, Bytes());
}

} // namespace
