#include "common2/util/OsVerApi.h"

#include "common2/util/UnameVersion.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <sys/utsname.h>

namespace {

TEST(MyOsVerOs, EveryTypeHasItsName) {
    const char* const names[] = {"unknown",        "win",          "win-arm64",   "win-uwp",     "mac-intel",
                                 "mac-arm",        "linux-x86_64", "linux-arm64", "solaris",     "apple-ios",
                                 "google-android", "chromeos",     "vpn-android", "knox-android"};
    const test::LogCapture capture;
    for (int type = 0; type < 14; ++type) {
        EXPECT_STREQ(MYOSVER_OS::ToString(type), names[type]);
    }
    EXPECT_TRUE(capture.records().empty());
}

TEST(MyOsVerOs, TypeOutOfRangeIsUnknownAndLogged) {
    const test::LogCapture capture;
    EXPECT_STREQ(MYOSVER_OS::ToString(14), "unknown");
    EXPECT_STREQ(MYOSVER_OS::ToString(-1), "unknown");
    EXPECT_EQ(capture.messages(), (std::vector<std::string>{"Unknown OS type: 14", "Unknown OS type: -1"}));
    EXPECT_EQ(capture.records()[0].function, "MYOSVER_OS::ToString");
}

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

TEST(OsVerApi, NothingKnownIsUnknown) {
    const OsVerApi nothing{OsVersion_t{}};
    EXPECT_EQ(static_cast<int>(nothing.GetType()), 0);
    EXPECT_EQ(nothing.GetVersionText(), "0.0.0");
    EXPECT_STREQ(nothing.GetFamilyName(), "Unknown");
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
