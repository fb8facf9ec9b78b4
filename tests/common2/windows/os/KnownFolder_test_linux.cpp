#include "common2/windows/os/KnownFolder.h"

#include "tests/support/LogCapture.h"
#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace {

using test::ScopedEnvironment;

class KnownFolderTest : public testing::Test {
    ScopedEnvironment data{"WREN_PROGRAM_DATA", nullptr};
    ScopedEnvironment xdg{"XDG_DATA_HOME", nullptr};
    ScopedEnvironment home{"HOME", "/home/somebody"};
};

TEST_F(KnownFolderTest, EveryIdHasItsFolder) {
    EXPECT_EQ(KnownFolder::GetPath(0), "/opt");
    EXPECT_EQ(KnownFolder::GetPath(1), "/opt");
    EXPECT_EQ(KnownFolder::GetPath(2), "/usr/lib");
    EXPECT_EQ(KnownFolder::GetPath(3), "/usr/lib");
    EXPECT_EQ(KnownFolder::GetPath(4), "/var/lib");
    EXPECT_EQ(KnownFolder::GetPath(5), "/home/somebody/.local/share");
    EXPECT_EQ(KnownFolder::GetPath(6), "/home/somebody");
}

TEST_F(KnownFolderTest, EnvironmentMayNameTheProgramData) {
    const ScopedEnvironment told("WREN_PROGRAM_DATA", "/some/where");
    EXPECT_EQ(KnownFolder::GetPath(4), "/some/where");
}

TEST_F(KnownFolderTest, EmptyVariableIsAsGoodAsNone) {
    const ScopedEnvironment emptyData("WREN_PROGRAM_DATA", "");
    const ScopedEnvironment emptyXdg("XDG_DATA_HOME", "");
    EXPECT_EQ(KnownFolder::GetPath(4), "/var/lib");
    EXPECT_EQ(KnownFolder::GetPath(5), "/home/somebody/.local/share");
}

TEST_F(KnownFolderTest, DataHomeMayBeTold) {
    const ScopedEnvironment told("XDG_DATA_HOME", "/data/home");
    EXPECT_EQ(KnownFolder::GetPath(5), "/data/home");
}

TEST_F(KnownFolderTest, RelativeDataHomeIsIgnored) {
    const ScopedEnvironment told("XDG_DATA_HOME", "data/home");
    EXPECT_EQ(KnownFolder::GetPath(5), "/home/somebody/.local/share");
}

TEST_F(KnownFolderTest, WithoutHomeThePasswdEntryTells) {
    const ScopedEnvironment none("HOME", nullptr);
    const passwd* entry = ::getpwuid(::getuid());
    ASSERT_NE(entry, nullptr);
    const std::filesystem::path folder = entry->pw_dir;
    EXPECT_EQ(KnownFolder::GetPath(6), folder);
    EXPECT_EQ(KnownFolder::GetPath(5), folder / ".local/share");
}

TEST_F(KnownFolderTest, OtherIdIsLoggedAndYieldsAnEmptyPath) {
    for (const int id : {7, -1}) {
        const test::LogCapture capture;
        EXPECT_EQ(KnownFolder::GetPath(id), "");
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].severity, 3);
        EXPECT_EQ(records[0].function, "KnownFolder::GetPath");
        EXPECT_EQ(records[0].message, "SHGetKnownFolderPath failed: 22");
    }
}

} // namespace
