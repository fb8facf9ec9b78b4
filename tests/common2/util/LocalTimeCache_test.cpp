#include "common2/util/LocalTimeCache.h"

#include "common2/util/LocalTimeText.h"
#include "tests/support/ScopedEnvironment.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const wchar_t* hour = L"%H";

std::int64_t presentTime = 0;

std::int64_t toldTime() { return presentTime; }

class LocalTimeCacheTest : public testing::Test {
protected:
    LocalTimeCacheTest() { presentTime = 1700000000; }

    test::ScopedEnvironment zone{"TZ", "XST-2"};
    common2::LocalTimeCache times{toldTime};
};

TEST_F(LocalTimeCacheTest, WritesTheTimeThatIsAskedFor) {
    EXPECT_EQ(times.now(L"%Y-%m-%d %H:%M:%S"), "2023-11-15 00:13:20");
    EXPECT_EQ(times.at(0, L"%Y-%m-%d %H:%M:%S"), "1970-01-01 02:00:00");
    EXPECT_EQ(times.at(0, hour), "02");
    EXPECT_EQ(times.now(L"%Y-%m-%d %H:%M:%S"), "2023-11-15 00:13:20");
}

TEST_F(LocalTimeCacheTest, FollowsTheClock) {
    EXPECT_EQ(times.now(L"%S"), "20");
    presentTime += 1;
    EXPECT_EQ(times.now(L"%S"), "21");
}

// As when the device travels: nothing else in the process asks for the zone.
TEST_F(LocalTimeCacheTest, ChangeOfTheZoneShowsWithinASecond) {
    EXPECT_EQ(times.at(0, hour), "02");
    const test::ScopedEnvironment elsewhere("TZ", "YST-5", test::ScopedEnvironment::Zone::IsReadAtTheEnd);
    EXPECT_EQ(times.at(0, hour), "02");
    presentTime += 1;
    EXPECT_EQ(times.at(0, hour), "05");
}

TEST_F(LocalTimeCacheTest, MoreTimesThanItKeepsAreWrittenAsWell) {
    for (int round = 0; round < 2; ++round) {
        for (std::int64_t time = 0; time < 50; ++time) {
            ASSERT_EQ(times.at(time, L"%H:%M:%S"), common2::localTimeText(time, L"%H:%M:%S"));
        }
    }
}

TEST_F(LocalTimeCacheTest, TimeWithoutATextIsEmpty) { EXPECT_EQ(times.at(0, L""), ""); }

} // namespace
