#include "common2/util/Mutex.h"

#include "tests/support/Holdings.h"

#include <gtest/gtest.h>

namespace {

void holdBothWays(common2::SharedMutex& mutex) {
    mutex.lock();
    mutex.unlock();
    mutex.lockShared();
    mutex.unlockShared();
}

TEST(SharedMutex, LeavesNoHandleBehind) {
    const test::Holdings before = test::holdings();
    for (int round = 0; round < 100; ++round) {
        common2::SharedMutex mutex;
        holdBothWays(mutex);
    }
    EXPECT_EQ(test::holdings().files, before.files);
}

} // namespace
