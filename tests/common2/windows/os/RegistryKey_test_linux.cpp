#include "common2/windows/os/RegistryKey.h"

#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using Bytes = std::vector<unsigned char>;

class RegistryKeyFolderTest : public testing::Test {
protected:
    test::TemporaryFolder data;
    test::ScopedEnvironment variable{"WREN_PROGRAM_DATA", data.path().c_str()};
    RegistryKey key;
};

TEST_F(RegistryKeyFolderTest, FileIsNoKey) {
    data.write("Maker", "x");
    EXPECT_NE(key.Open(L"Software\\Maker", RegistryKey::readAccess), 0u);
}

TEST_F(RegistryKeyFolderTest, FolderIsNoValue) {
    data.write("Maker/Value/x", "");
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    Bytes bytes;
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), unsigned{EINVAL});
}

TEST_F(RegistryKeyFolderTest, HugeValueIsRefused) {
    data.write("Maker/Value", std::string(64 * 1024, 'x'));
    data.write("Maker/Larger", std::string(64 * 1024 + 1, 'x'));
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    Bytes bytes;
    EXPECT_EQ(key.QueryBinaryValue(L"Value", bytes), 0u);
    EXPECT_EQ(bytes.size(), 64u * 1024);
    EXPECT_EQ(key.QueryBinaryValue(L"Larger", bytes), unsigned{EFBIG});
    EXPECT_EQ(bytes, Bytes());
}

TEST_F(RegistryKeyFolderTest, EndOfTheLineIsNoPartOfAText) {
    data.write("Maker/Value", "some text\r\n");
    ASSERT_EQ(key.Open(L"Maker", RegistryKey::readAccess), 0u);
    std::string text;
    EXPECT_EQ(key.QueryStringValue(L"Value", text), 0u);
    EXPECT_EQ(text, "some text");
}

} // namespace
