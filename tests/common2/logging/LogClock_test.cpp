#include "common2/logging/LogClock.h"

#include "common2/util/LocalTime.h"
#include "tests/support/ScopedEnvironment.h"

#include <boost/date_time/posix_time/conversion.hpp>
#include <gtest/gtest.h>

namespace {

/// How far the clock is ahead of UTC, in whole minutes.
long minutesAhead() {
    const auto universal = boost::posix_time::from_time_t(0) +
                           boost::posix_time::seconds(static_cast<long>(common2::presentSeconds()));
    const auto ahead = common2::LogClock::get_clock() - universal;
    return static_cast<long>((ahead.total_seconds() + 30) / 60);
}

TEST(LogClock, FollowsTheZoneThatTheDeviceTravelsTo) {
    const test::ScopedEnvironment home("TZ", "XST-2");
    EXPECT_EQ(minutesAhead(), 2 * 60);
    common2::followTimeZone(-1); // so that this second has not been looked at
    const test::ScopedEnvironment abroad("TZ", "YST-5", test::ScopedEnvironment::Zone::IsReadAtTheEnd);
    EXPECT_EQ(minutesAhead(), 5 * 60);
}

} // namespace
