#include "common2/util/OsVerApi.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

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

TEST(OsVerApi, NothingKnownIsUnknown) {
    const OsVerApi nothing{OsVersion_t{}};
    EXPECT_EQ(static_cast<int>(nothing.GetType()), 0);
    EXPECT_EQ(nothing.GetVersionText(), "0.0.0");
    EXPECT_STREQ(nothing.GetFamilyName(), "Unknown");
}

TEST(OsVerApi, VersionTextHasAFurtherWordWhereThereIsOne) {
    OsVersion_t version{};
    version.major = 10;
    version.minor = 0;
    version.build = 19045;
    EXPECT_EQ(OsVerApi(version).GetVersionText(), "10.0.19045");
    version.further = "Service Pack 1";
    EXPECT_EQ(OsVerApi(version).GetVersionText(), "10.0.19045 Service Pack 1");
}

} // namespace
