#include "common2/util/LocalTime.h"

#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>
#include <utility>

namespace {

using common2::localTime;

/// Date, time, day of the week and day of the year.
std::string asText(const std::optional<std::tm>& time) {
    if (!time) {
        return "none";
    }
    char text[64];
    std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d, %d, %d", time->tm_year + 1900,
                  time->tm_mon + 1, time->tm_mday, time->tm_hour, time->tm_min, time->tm_sec, time->tm_wday,
                  time->tm_yday);
    return text;
}

TEST(LocalTime, HoldsForTimesBeyondAllLimitsOfTheCLibraries) {
    const test::ScopedEnvironment zone("TZ", "XST-2"); // two hours ahead of UTC, without rules of its own
    const std::pair<std::int64_t, std::string> times[] = {
        {0, "1970-01-01 02:00:00, 4, 0"},
        {1709164800, "2024-02-29 02:00:00, 4, 59"},
        {2147483647, "2038-01-19 05:14:07, 2, 18"},
        {2147483648, "2038-01-19 05:14:08, 2, 18"},
        {4294967296, "2106-02-07 08:28:16, 0, 37"},
        {32503679999, "3000-01-01 01:59:59, 3, 0"},
        {32503680000, "3000-01-01 02:00:00, 3, 0"},
        {32535208799, "3000-12-31 23:59:59, 3, 364"},
        {32535208800, "3001-01-01 00:00:00, 4, 0"},
        {45126460800, "3400-01-01 02:00:00, 3, 0"},
        {253402300800, "10000-01-01 02:00:00, 6, 0"},
        {922337203685, "31197-09-14 04:48:05, 0, 256"},
    };
    for (const auto& [seconds, text] : times) {
        EXPECT_EQ(asText(localTime(seconds)), text) << seconds;
    }
}

TEST(LocalTime, YearThatNoIntHoldsHasNone) {
    EXPECT_EQ(asText(localTime(std::numeric_limits<std::int64_t>::max())), "none");
    EXPECT_EQ(asText(localTime(std::numeric_limits<std::int64_t>::min())), "none");
}

TEST(LocalTime, TheZoneIsFollowedOnceASecond) {
    using Zone = test::ScopedEnvironment::Zone;
    const test::ScopedEnvironment home("TZ", "XST-2");
    common2::followTimeZone(1);
    const test::ScopedEnvironment abroad("TZ", "YST-5", Zone::IsReadAtTheEnd);
    common2::followTimeZone(1);
    EXPECT_EQ(asText(localTime(0)), "1970-01-01 02:00:00, 4, 0");
    common2::followTimeZone(2);
    EXPECT_EQ(asText(localTime(0)), "1970-01-01 05:00:00, 4, 0");
    const test::ScopedEnvironment home2("TZ", "XST-2", Zone::IsReadAtTheEnd);
    common2::followTimeZone(1); // a clock that was put back
    EXPECT_EQ(asText(localTime(0)), "1970-01-01 02:00:00, 4, 0");
}

TEST(LocalTime, PresentIsTheSameInSecondsAndMicroseconds) {
    const std::int64_t before = common2::presentSeconds();
    const std::int64_t between = common2::presentMicroseconds();
    EXPECT_GE(between, before * 1000000);
    EXPECT_GT(before, 1700000000);
}

} // namespace
