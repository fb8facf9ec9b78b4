#include "common2/util/OsVerApi.h"

#include "common2/util/UnameVersion.h"

#include <gtest/gtest.h>

#include <sys/utsname.h>

namespace {

TEST(OsVerApi, MachineDecidesTheType) {
    const auto typeOf = [](const char* machine) {
        return static_cast<int>(common2::linuxVersion("6.1.0", machine).type);
    };
    EXPECT_EQ(typeOf("x86_64"), 6);
    EXPECT_EQ(typeOf("aarch64"), 7);
    EXPECT_EQ(typeOf("arm64"), 7);
    for (const char* other : {"", "i686", "armv7l", "riscv64", "x86_64 "}) {
        EXPECT_EQ(typeOf(other), 0) << other;
    }
}

TEST(OsVerApi, VersionTextIsThreeNumbersAndAFurtherWord) {
    const auto textOf = [](const char* release) {
        return OsVerApi(common2::linuxVersion(release, "x86_64")).GetVersionText();
    };
    EXPECT_EQ(textOf("6.1.12"), "6.1.12");
    EXPECT_EQ(textOf("6.1.0-18-amd64"), "6.1.0 18-amd64");
    EXPECT_EQ(textOf("5.15.167.4-generic"), "5.15.167 4-generic");
    EXPECT_EQ(textOf("6.12.1+"), "6.12.1");
    EXPECT_EQ(textOf("6.12rc1"), "6.12.0 rc1");
    EXPECT_EQ(textOf("7"), "7.0.0");
    EXPECT_EQ(textOf("7."), "7.0.0");
    EXPECT_EQ(textOf(""), "0.0.0");
    EXPECT_EQ(textOf("rolling"), "0.0.0 rolling");
    EXPECT_EQ(textOf("-1.2.3"), "0.0.0 1.2.3");
    EXPECT_EQ(textOf("99999999999.1"), "0.0.0 99999999999.1");
}

TEST(OsVerApi, ReadsTheRunningSystem) {
    utsname names{};
    ASSERT_EQ(::uname(&names), 0);
    const OsVerApi system;
    EXPECT_STREQ(system.GetFamilyName(), "Linux");
    EXPECT_EQ(system.GetVersionText(),
              OsVerApi(common2::linuxVersion(names.release, names.machine)).GetVersionText());
    EXPECT_NE(system.GetVersionText(), "0.0.0");
}

TEST(OsVerApi, KnowsWhetherTheSystemHas64Bits) {
    utsname names{};
    ASSERT_EQ(::uname(&names), 0);
    const std::string machine = names.machine;
    EXPECT_EQ(OsVerApi::Is64BitSystem(), machine == "x86_64" || machine == "aarch64");
}

} // namespace
