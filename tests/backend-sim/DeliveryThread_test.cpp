#include "backend-sim/DeliveryThread.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

constexpr std::int64_t noon = 1'700'000'000;

class DeliveryThread : public ::testing::Test {
protected:
    /// A task that notes its name and the time at which it runs.
    sim::DeliveryThread::Task note(std::string name) {
        return [this, name] { notes.push_back(name + " " + std::to_string(thread.unixSeconds() - noon)); };
    }

    sim::DeliveryThread::Owner owner = std::make_shared<int>();
    std::vector<std::string> notes; ///< the thread's until it is idle
    sim::DeliveryThread thread;
};

TEST_F(DeliveryThread, RunsTasksInTheOrderOfTheirTimesAndThenOfTheirPosting) {
    thread.holdTime(noon);
    thread.post(note("third"), 3s);
    thread.post(note("first"), 1s);
    thread.post(note("second"), 2s);
    thread.post(note("third too"), 3s);
    thread.advanceTime(3s);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre("first 1", "second 2", "third 3", "third too 3"));
}

TEST_F(DeliveryThread, HeldTimeStandsStill) {
    thread.holdTime(noon);
    thread.post(note("now"));
    thread.post(note("ahead"), 1ms);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre("now 0"));
    EXPECT_EQ(thread.unixSeconds(), noon);
}

TEST_F(DeliveryThread, HeldTimeComesToRestWhereItWasToldToGo) {
    thread.holdTime(noon);
    thread.advanceTime(1500ms);
    EXPECT_EQ(thread.unixSeconds(), noon + 1) << "also where no task has started the thread";
    thread.post(note("early"), 500ms);
    thread.advanceTime(10s);
    thread.waitUntilIdle();
    EXPECT_EQ(thread.unixSeconds(), noon + 11);
    EXPECT_THAT(notes, ElementsAre("early 2"));
}

TEST_F(DeliveryThread, TaskThatFollowsATaskCountsFromItsTime) {
    thread.holdTime(noon);
    thread.post(
        [this] {
            note("first")();
            thread.post(note("second"), 4s);
        },
        3s);
    thread.advanceTime(100s);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre("first 3", "second 7"));
}

TEST_F(DeliveryThread, HoldingAgainSetsTheWallClock) {
    thread.holdTime(noon);
    thread.post(note("task"), 10s);
    thread.advanceTime(4s);
    thread.holdTime(noon + 1000);
    EXPECT_EQ(thread.unixSeconds(), noon + 1000);
    thread.advanceTime(6s);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre("task 1006"));
}

TEST_F(DeliveryThread, ReleasedTimeGoesOnFromWhereItStood) {
    thread.holdTime(noon);
    thread.post(note("ahead"), 1h);
    thread.advanceTime(1h - 1ms);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre());
    thread.releaseTime();
    thread.waitUntilIdle();
    EXPECT_EQ(notes.size(), 1u);
    EXPECT_GT(thread.unixSeconds(), noon) << "the wall clock is the real one again";
}

TEST_F(DeliveryThread, RealTimeCannotBeMoved) {
    thread.postTimer(owner, note("far"), 1h);
    thread.advanceTime(2h);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre());
}

TEST_F(DeliveryThread, TimersAreNotWaitedForBeforeTheirTime) {
    thread.postTimer(owner, note("far"), 1h);
    thread.post(note("now"));
    thread.postTimer(owner, note("due"), 0ms);
    thread.waitUntilIdle();
    EXPECT_EQ(notes.size(), 2u);
}

TEST_F(DeliveryThread, DropsTheTasksOfAnOwnerWhoHasGone) {
    thread.holdTime(noon);
    thread.postFor(owner, note("kept"), 1s);
    auto leaving = std::make_shared<int>();
    thread.postFor(leaving, note("dropped"), 1s);
    thread.postTimer(leaving, note("dropped too"), 2s);
    leaving.reset();
    thread.advanceTime(10s);
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre("kept 1"));
    EXPECT_EQ(thread.unixSeconds(), noon + 10);
}

TEST_F(DeliveryThread, DoesNotWaitForTheTasksOfAnOwnerWhoHasGone) {
    thread.postFor(owner, note("far"), 1h);
    thread.post([this] { owner.reset(); });
    thread.waitUntilIdle();
    EXPECT_THAT(notes, ElementsAre());
}

TEST_F(DeliveryThread, TakesTheLongestDelay) {
    constexpr sim::DeliveryThread::Milliseconds longest{std::numeric_limits<std::int64_t>::max() / 100};
    thread.postTimer(owner, note("never"), longest);
    thread.post(note("now"));
    thread.waitUntilIdle();
    EXPECT_EQ(notes.size(), 1u);
}

TEST_F(DeliveryThread, IsIdleBeforeItsFirstTask) {
    thread.waitUntilIdle();
    thread.waitForRunningTask();
    EXPECT_FALSE(thread.isCurrent());
}

TEST_F(DeliveryThread, WaitingForTheRunningTaskDoesNotWaitForTheNext) {
    thread.post(note("ahead"), 1h);
    thread.waitForRunningTask();
    EXPECT_THAT(notes, ElementsAre());
}

/// Takes its time to go.
struct Slow {
    explicit Slow(std::atomic<bool>& flag)
        : isGone(flag) {}
    Slow(const Slow&) = delete;
    Slow& operator=(const Slow&) = delete;
    ~Slow() {
        for (int i = 0; i < 1000; ++i) {
            std::this_thread::yield();
        }
        isGone = true;
    }
    std::atomic<bool>& isGone;
};

TEST_F(DeliveryThread, WhatATaskHoldsIsGoneWhenTheThreadIsIdle) {
    std::atomic<bool> isGone = false;
    thread.post([held = std::make_shared<Slow>(isGone)] {});
    thread.waitUntilIdle();
    EXPECT_TRUE(isGone);
}

} // namespace
