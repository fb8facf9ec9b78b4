#include "common2/windows/os/RegistryKey.h"

#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace {

using Bytes = std::vector<unsigned char>;

class RegistryKeyTest : public testing::Test {
protected:
    test::TemporaryFolder data;
    test::ScopedEnvironment variable{"WREN_PROGRAM_DATA", data.path().c_str()};
    RegistryKey key;
};

TEST_F(RegistryKeyTest, AccessMasks) {
    EXPECT_EQ(RegistryKey::readAccess, 0x20019u);
    EXPECT_EQ(RegistryKey::readAccessOf64Bit, 0x20119u);
}

TEST_F(RegistryKeyTest, KeyIsAFolderOfTheProgramData) {
    data.write("Maker/Product/Value", std::string_view("\0\xFFz", 3));
    for (const wchar_t* path :
         {L"Software\\Maker\\Product", L"SOFTWARE\\Maker\\Product", L"Maker\\Product"}) {
        ASSERT_EQ(key.Open(path, RegistryKey::readAccess), 0u);
        Bytes bytes;
        EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), 0u);
        EXPECT_EQ(bytes, (Bytes{0, 0xFF, 'z'}));
    }
}

TEST_F(RegistryKeyTest, MissingKeyIsNotFoundAndStaysClosed) {
    EXPECT_EQ(key.Open(L"Software\\Nothing", RegistryKey::readAccess), unsigned{ENOENT});
    Bytes bytes{1};
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), unsigned{EBADF});
    EXPECT_EQ(bytes, Bytes());
}

TEST_F(RegistryKeyTest, FileIsNoKey) {
    data.write("Maker", "x");
    EXPECT_NE(key.Open(L"Software\\Maker", RegistryKey::readAccess), 0u);
}

TEST_F(RegistryKeyTest, MissingValueIsNotFound) {
    data.write("Maker/Other", "x");
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    Bytes bytes{1};
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), unsigned{ENOENT});
    EXPECT_EQ(bytes, Bytes());
    std::string text = "stale";
    EXPECT_EQ(key.QueryStringValue(L"Value", text), unsigned{ENOENT});
    EXPECT_EQ(text, "");
}

TEST_F(RegistryKeyTest, EmptyValueHasSizeZero) {
    data.write("Maker/Value", "");
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    Bytes bytes{1};
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), 0u);
    EXPECT_EQ(bytes, Bytes());
}

TEST_F(RegistryKeyTest, FolderIsNoValue) {
    data.write("Maker/Value/x", "");
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    Bytes bytes;
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), unsigned{EINVAL});
}

TEST_F(RegistryKeyTest, HugeValueIsRefused) {
    data.write("Maker/Value", std::string(64 * 1024, 'x'));
    data.write("Maker/Larger", std::string(64 * 1024 + 1, 'x'));
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    Bytes bytes;
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), 0u);
    EXPECT_EQ(bytes.size(), 64u * 1024);
    EXPECT_EQ(key.QueryBinaryValue(L"Larger", bytes), unsigned{EFBIG});
    EXPECT_EQ(bytes, Bytes());
}

TEST_F(RegistryKeyTest, EndOfTheLineIsNoPartOfAText) {
    data.write("Maker/Value", "some text\r\n");
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    std::string text;
    EXPECT_EQ(key.QueryStringValue(L"Value", text), 0u);
    EXPECT_EQ(text, "some text");
}

} // namespace
