#include "tests/support/Holdings.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <thread>

namespace {

TEST(Holdings, ThreadThatWasJoinedDoesNotCountAsRunning) {
    std::thread([] {}).join(); // a sanitizer makes a thread of its own along with the first
    const std::size_t before = test::runningThreads();
    for (int round = 0; round < 1000; ++round) {
        std::thread([] {}).join();
        ASSERT_EQ(test::runningThreads(), before) << "in round " << round;
    }
}

} // namespace
