#include "host/strict/CallWatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using host::CallDeadlines;
using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const CallDeadlines::Time start{};

TEST(CallDeadlines, CallIsOverdueWhenItsTimeIsUpAndIsToldOnce) {
    CallDeadlines calls(milliseconds(5'000));
    calls.begin("Start", start);
    EXPECT_EQ(calls.next(), start + milliseconds(5'000));
    EXPECT_THAT(calls.takeOverdue(start + milliseconds(4'999)), IsEmpty());
    EXPECT_THAT(calls.takeOverdue(start + milliseconds(5'000)), ElementsAre("Start"));
    EXPECT_THAT(calls.takeOverdue(start + milliseconds(9'000)), IsEmpty());
    EXPECT_EQ(calls.next(), std::nullopt);
}

TEST(CallDeadlines, CallThatCameBackIsForgotten) {
    CallDeadlines calls(milliseconds(5'000));
    const auto first = calls.begin("Start", start);
    calls.begin("Stop", start + milliseconds(1));
    calls.end(first);
    EXPECT_EQ(calls.next(), start + milliseconds(5'001));
    EXPECT_THAT(calls.takeOverdue(start + milliseconds(6'000)), ElementsAre("Stop"));
}

TEST(CallDeadlines, TimeThatTheHostTakesDoesNotCount) {
    CallDeadlines calls(milliseconds(5'000));
    calls.begin("Start", start);
    calls.restart(start + milliseconds(4'000));
    EXPECT_THAT(calls.takeOverdue(start + milliseconds(8'999)), IsEmpty());
    EXPECT_THAT(calls.takeOverdue(start + milliseconds(9'000)), ElementsAre("Start"));
}

} // namespace
