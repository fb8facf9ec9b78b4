#include "host/serve/MachineTracker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class MachineTracker : public ::testing::Test {
protected:
    void log(const std::string& message, const char* function = "QuillSmlLogger_t::log_state_change") {
        tracker.take({0, function, "state_machine/QuillSmlLogger", 25, message});
    }
    void start() {
        log("[struct PresentationPlugin_s][transition] class Registered_s -> class Starting_s");
        log("[struct PresentationPlugin_s][transition] class Starting_s -> struct Started_s");
    }
    std::string root() const { return tracker.states().root; }
    std::string region(const std::string& name) const { return tracker.states().regions.at(name); }

    host::serve::MachineTracker tracker;
};

TEST_F(MachineTracker, ThereIsNoMachineWithoutAnObject) {
    EXPECT_EQ(root(), "");
    tracker.create();
    EXPECT_EQ(root(), "Unregistered_s");
    EXPECT_THAT(tracker.states().regions, IsEmpty());
    tracker.dispose();
    EXPECT_EQ(root(), "");
}

TEST_F(MachineTracker, FollowsTheRoot) {
    tracker.create();
    log("[struct PresentationPlugin_s][transition] class Unregistered_s -> class Registered_s");
    EXPECT_EQ(root(), "Registered_s");
    start();
    EXPECT_EQ(root(), "Started_s");
    log("[struct PresentationPlugin_s][transition] struct Started_s -> class Registered_s");
    EXPECT_EQ(root(), "Registered_s");
    EXPECT_THAT(tracker.states().regions, IsEmpty());
}

TEST_F(MachineTracker, RegionsBeginAnewWithEveryStart) {
    tracker.create();
    for (int i = 0; i < 2; ++i) {
        start();
        EXPECT_THAT(tracker.states().regions,
                    ElementsAre(Pair("alert", "AlertIdle_s"), Pair("dataplane_auth", "DataplaneAuthIdle_s"),
                                Pair("enroll", "EnrollIdle_s"), Pair("main", "MainActive_s"),
                                Pair("unenroll", "UnenrollIdle_s")));
        log("[struct Started_s][transition] class MainActive_s -> class MainEnrolling_s");
    }
}

TEST_F(MachineTracker, EveryStateBelongsToItsRegion) {
    tracker.create();
    start();
    const struct {
        const char* region;
        const char* state;
    } rows[] = {
        {"main", "MainEnrolling_s"},
        {"main", "MainUnenrolling_s"},
        {"main", "MainActive_s"},
        {"enroll", "EnrollRequestPending_s"},
        {"enroll", "EnrollStarted_s"},
        {"enroll", "EnrollAuthenticating_s"},
        {"enroll", "EnrollCancelPending_s"},
        {"enroll", "EnrollProgress_s"},
        {"enroll", "EnrollIdle_s"},
        {"dataplane_auth", "DataplaneAuthenticating_s"},
        {"dataplane_auth", "DataplaneAuthIdle_s"},
        {"unenroll", "UnenrollRequestPending_s"},
        {"unenroll", "UnenrollStarted_s"},
        {"unenroll", "UnenrollIdle_s"},
        {"alert", "AlertShowingDialog_s"},
        {"alert", "AlertIdle_s"},
    };
    for (const auto& row : rows) {
        const std::uint64_t before = tracker.states().version;
        log(std::string("[struct Started_s][transition] class Whatever_s -> class ") + row.state);
        EXPECT_EQ(region(row.region), row.state);
        EXPECT_EQ(tracker.states().version, before + 1);
    }
    EXPECT_EQ(tracker.states().regions.size(), 5u);
}

TEST_F(MachineTracker, OtherLinesChangeNothing) {
    tracker.create();
    start();
    const std::uint64_t before = tracker.states().version;
    log("[struct Started_s][process_event] struct InitiateEnrollment_e");
    log("[struct Started_s][transition] class MainActive_s -> class Nobody_s");
    log("[struct Other_s][transition] class MainActive_s -> class MainEnrolling_s");
    log("[struct Started_s][transition] class MainActive_s");
    log("x[struct Started_s][transition] class MainActive_s -> class MainEnrolling_s");
    log("");
    log("[struct Started_s][transition] class MainActive_s -> class MainEnrolling_s", "Somebody::else");
    EXPECT_EQ(tracker.states().version, before);
}

TEST_F(MachineTracker, RegionsStandStillWhileTheMachineDoesNotRun) {
    tracker.create();
    log("[struct Started_s][transition] class MainActive_s -> class MainEnrolling_s");
    EXPECT_THAT(tracker.states().regions, IsEmpty());
}

} // namespace
