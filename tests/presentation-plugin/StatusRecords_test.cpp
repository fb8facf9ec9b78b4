#include "presentation-plugin/StatusRecords.h"

#include <gtest/gtest.h>

namespace {

TEST(StatusRecords, RecordThatNobodyHoldsIsTakenAgain) {
    StatusRecords records;
    const StatusNotification_t* first = records.take().get();
    EXPECT_EQ(records.take().get(), first);
}

TEST(StatusRecords, RecordThatSomebodyHoldsIsLeftAlone) {
    StatusRecords records;
    const auto cached = records.take();
    const auto next = records.take();
    EXPECT_NE(next, cached);
    const auto third = records.take();
    EXPECT_NE(third, cached);
    EXPECT_NE(third, next);
}

TEST(StatusRecords, TwoTakeTurns) {
    StatusRecords records;
    auto cached = records.take();
    const StatusNotification_t* first = cached.get();
    cached = records.take();
    EXPECT_EQ(records.take().get(), first);
}

TEST(StatusRecords, ForgottenRecordsHaveTheirHolderOnly) {
    StatusRecords records;
    const auto cached = records.take();
    EXPECT_EQ(cached.use_count(), 2);
    records.forget();
    EXPECT_EQ(cached.use_count(), 1);
    EXPECT_NE(records.take(), cached);
}

} // namespace
