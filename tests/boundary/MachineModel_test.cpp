#include "tests/boundary/MachineModel.h"

#include "tests/boundary/MachineWalk.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

// The machine of the whole plugin, with real documents and real clicks, held against tables written anew.

namespace {

using test::BackendCall;
using test::MachineWalk;

TEST(MachineModel, EveryTwoStepsFromEveryStageGoAsTheTablesSay) {
    for (const test::Stage& stage : test::allStages()) {
        for (const std::string_view first : test::allSteps()) {
            MachineWalk walk;
            ASSERT_EQ(walk.step("start"), "");
            for (const std::string_view step : stage.steps) {
                ASSERT_EQ(walk.step(step), "") << stage.name << ", " << step;
            }
            ASSERT_EQ(walk.step(first), "") << stage.name << ", then " << first;
            for (const std::string_view second : test::allSteps()) {
                ASSERT_EQ(walk.step(second), "") << stage.name << ", then " << first << " ... " << second;
            }
            ASSERT_GT(walk.eventCount(), 14u); // documents at least always reach the machine
        }
    }
}

TEST(MachineModel, EveryFailedCallAtEveryStageGoesAsTheTablesSay) {
    for (const test::Stage& stage : test::allStages()) {
        for (const std::string_view step : test::allSteps()) {
            MachineWalk walk;
            walk.step("start");
            for (const std::string_view arranging : stage.steps) {
                walk.step(arranging);
            }
            walk.failAll(true);
            ASSERT_EQ(walk.step(step), "") << stage.name << ", then " << step;
            walk.failAll(false);
            for (const std::string_view after : {"started", "complete", "error", "stop", "start"}) {
                ASSERT_EQ(walk.step(after), "") << stage.name << ", then " << step << ", then " << after;
            }
        }
    }
}

TEST(MachineModel, RandomWalksGoAsTheTablesSay) {
    std::mt19937 random(4);
    for (int round = 0; round < 60; ++round) {
        MachineWalk walk;
        std::string way;
        for (int steps = 0; steps < 120; ++steps) {
            const std::size_t number = random() % (test::allSteps().size() + 6);
            const std::string_view step = number < test::allSteps().size() ? test::allSteps()[number]
                                          : number % 4 == 0                ? "stop"
                                                                           : "start";
            walk.failAll(random() % 8 == 0);
            way.append(" ").append(step);
            ASSERT_EQ(walk.step(step), "") << way;
        }
    }
}

TEST(MachineModel, TheModelSeesWhatIsMissingAndWhatIsTooMuch) {
    test::MachineModel model;
    const std::vector<std::string> whole{"root Register_e", "Unregistered_s -> Registered_s",
                                         "RegisterCallbacks_a", "root anonymous"};
    EXPECT_EQ(test::MachineModel().follow(whole, test::factsOf("register"), false), "");
    EXPECT_NE(test::MachineModel().follow(whole, test::factsOf("register"), true), "");
    EXPECT_NE(test::MachineModel().follow(whole, test::factsOf("start"), false), "");
    for (std::size_t missing = 0; missing < whole.size(); ++missing) {
        std::vector<std::string> trace = whole;
        trace.erase(trace.begin() + static_cast<std::ptrdiff_t>(missing));
        EXPECT_NE(test::MachineModel().follow(trace, test::factsOf("register"), false), "") << missing;
    }
    std::vector<std::string> tooMuch = whole;
    tooMuch.push_back("root anonymous");
    EXPECT_NE(test::MachineModel().follow(tooMuch, test::factsOf("register"), false), "");
}

} // namespace
