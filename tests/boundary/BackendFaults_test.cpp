#include "tests/boundary/Scene.h"
#include "tests/support/LogCapture.h"
#include "tests/support/QuietLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>

// Each operation of the backend fails with each result at each stage of the plugin, and the plugin goes on.

namespace {

using test::BackendCall;
using test::Interface;
using test::Scene;
using testing::Contains;
using testing::Not;

using Lines = std::vector<std::string>;

/// All results that are known, and two that are not. Only the first nine have a name in the plugin's log.
constexpr std::uint32_t knownResults = 30;
const std::vector<std::uint32_t> failures = [] {
    std::vector<std::uint32_t> all{knownResults, 0xFFFFFFFF};
    for (std::uint32_t result = 1; result < knownResults; ++result) {
        all.push_back(result);
    }
    return all;
}();

std::string nameOf(std::uint32_t result) {
    constexpr std::array<const char*, 9> names{"Success",        "BadParameter",       "Unexpected",
                                               "NullPointer",    "InsufficientBuffer", "NotImplemented",
                                               "NotInitialized", "NotFound",           "InvalidState"};
    return result < names.size() ? names[result] : "";
}

/// The requests, and what the log says where one fails.
const std::map<BackendCall, std::string> requests{
    {BackendCall::InitiateEnrollment, "Couldn't initiate enrollment: "},
    {BackendCall::InitiateReEnrollment, "Couldn't initiate re-enrollment: "},
    {BackendCall::EnrollmentAuthReply, "Couldn't submit enrollment auth reply: "},
    {BackendCall::CancelEnrollment, "Couldn't cancel enrollment: "},
    {BackendCall::InitiateUnenrollment, "Couldn't initiate unenrollment: "},
    {BackendCall::PerformConfigSync, "Couldn't perform config sync: "},
    {BackendCall::TriggerPostureReports, "Couldn't trigger posture reports: "},
    {BackendCall::DataplaneAuthReply, "Couldn't submit dataplane auth reply: "},
};

class BackendFaults : public testing::Test {
protected:
    /// Warnings and errors since the last time, as "severity message".
    Lines logged() {
        Lines lines;
        for (const test::LoggedRecord& record : log.records()) {
            lines.push_back(std::to_string(record.severity) + " " + record.message);
        }
        log.clear();
        return lines;
    }

    test::QuietLog onlyTrouble{DBG_WARN};
    test::LogCapture log;
};

/// Takes one step at which all requests fail.
/// @return the requests that the step made
std::vector<BackendCall> takeAFailure(Scene& scene, std::string_view step, std::uint32_t result) {
    std::map<BackendCall, std::size_t> before;
    for (const auto& [call, words] : requests) {
        before[call] = scene.backend.count(call);
        scene.backend.answer(call, static_cast<QuillApiResult>(result));
    }
    scene.step(step);
    std::vector<BackendCall> made;
    for (const auto& [call, words] : requests) {
        scene.backend.answer(call, QuillApiResult::Success);
        if (scene.backend.count(call) != before[call]) {
            made.push_back(call);
        }
    }
    return made;
}

TEST_F(BackendFaults, EveryFailedRequestAtEveryStageEndsAtTheLogAndThePluginStaysUsable) {
    std::map<BackendCall, std::size_t> failed;
    for (const test::Stage& stage : test::allStages()) {
        for (const std::string_view step : test::allSteps()) {
            for (const std::uint32_t result : failures) {
                Scene scene;
                ASSERT_EQ(scene.step("start"), 0);
                scene.play(stage.steps);
                log.clear();
                const std::vector<BackendCall> made = takeAFailure(scene, step, result);
                const Lines lines = logged();
                scene.settle();
                ASSERT_TRUE(scene.enrols()) << stage.name << ", then " << step << ", result " << result;
                ASSERT_EQ(scene.step("stop"), 0);
                if (made.empty()) {
                    break; // the results are all alike here
                }
                ASSERT_EQ(made.size(), 1u);
                ++failed[made[0]];
                EXPECT_EQ(lines, (Lines{"3 " + requests.at(made[0]) + nameOf(result),
                                        "2 Unexpected state transition"}))
                    << stage.name << ", then " << step;
            }
        }
    }
    for (const auto& [call, words] : requests) {
        EXPECT_GE(failed[call], failures.size()) << words;
    }
}

TEST_F(BackendFaults, AConnectionThatIsNotMadeLeavesThePluginRegisteredWithTheErrorShown) {
    for (const std::uint32_t result : failures) {
        for (const auto& [call, words] : {std::pair(BackendCall::CreateApi, "Couldn't create QUILL API: "),
                                          std::pair(BackendCall::Start, "Couldn't start QUILL API: ")}) {
            Scene scene;
            std::string lastTile;
            scene.host.onNotice = [&](const char* xml) {
                lastTile = std::string_view(xml).find("Kestrel Suite error") != std::string_view::npos
                               ? xml
                               : lastTile;
            };
            log.clear(); // of what the making told
            scene.backend.answer(call, static_cast<QuillApiResult>(result));
            EXPECT_EQ(scene.step("start"), -10);
            EXPECT_EQ(logged(), Lines{std::string("3 ") + words + nameOf(result)});
            EXPECT_NE(lastTile, "");
            EXPECT_EQ(scene.backend.connectionCount(), 0u);
            EXPECT_EQ(scene.host.stops, 0u);
            scene.backend.answer(call, QuillApiResult::Success);
            EXPECT_EQ(scene.step("start"), 0);
            EXPECT_TRUE(scene.enrols());
        }
        log.clear();
    }
}

TEST_F(BackendFaults, AFailedStopAtEveryStageStopsAllTheSame) {
    for (const test::Stage& stage : test::allStages()) {
        for (const std::uint32_t result : failures) {
            Scene scene;
            scene.step("start");
            scene.play(stage.steps);
            scene.backend.answer(BackendCall::Stop, static_cast<QuillApiResult>(result));
            log.clear();
            EXPECT_EQ(scene.step("stop"), 0);
            EXPECT_EQ(logged(), Lines{"3 Couldn't stop QUILL API: " + nameOf(result)});
            EXPECT_EQ(scene.host.stops, 1u);
            EXPECT_EQ(scene.backend.connectionCount(), 0u);
            EXPECT_EQ(scene.step("start"), 0);
            EXPECT_TRUE(scene.enrols()) << stage.name;
        }
    }
}

TEST_F(BackendFaults, AConnectionThatIsMissingThoughMadeIsAFailure) {
    Scene scene;
    log.clear(); // of what the making told
    scene.backend.giveNoApi(true);
    EXPECT_EQ(scene.step("start"), -10);
    EXPECT_EQ(logged(), Lines{"3 Couldn't create QUILL API: Success"});
    scene.backend.giveNoApi(false);
    EXPECT_EQ(scene.step("start"), 0);
    EXPECT_TRUE(scene.enrols());
}

TEST_F(BackendFaults, AFactoryThatHasGoneFailsEveryStartOfItsPlugins) {
    Scene scene;
    log.clear(); // of what the making told
    scene.backend.expireFactory();
    EXPECT_EQ(scene.step("start"), -10);
    EXPECT_EQ(logged(), Lines{"3 QUILL API factory not initialized"});
    scene.backend.renewFactory();
    EXPECT_EQ(scene.step("start"), -10);
    scene.plugin = test::makePlugin(Interface::Cpp); // another one finds the new factory
    scene.plugin->Register(scene.host);
    EXPECT_EQ(scene.step("start"), 0);
    EXPECT_TRUE(scene.enrols());
}

TEST_F(BackendFaults, AFactoryThatGoesWhileThePluginRunsChangesNothingUntilTheNextStart) {
    Scene scene;
    EXPECT_EQ(scene.step("start"), 0);
    scene.backend.expireFactory();
    EXPECT_TRUE(scene.enrols());
    EXPECT_EQ(scene.step("stop"), 0);
    EXPECT_EQ(scene.step("start"), -10);
}

TEST_F(BackendFaults, WithoutAFactoryThereIsNoPlugin) {
    for (const std::uint32_t result : failures) {
        test::MemoryBackend::instance().reset();
        test::MemoryBackend::instance().answer(BackendCall::GetQuillApiFactory,
                                               static_cast<QuillApiResult>(result));
        log.clear();
        EXPECT_EQ(test::makePlugin(Interface::Cpp), nullptr);
        EXPECT_EQ(logged(), Lines{"3 GetQuillApiFactory returned error " + nameOf(result)});
        EXPECT_EQ(test::makePlugin(Interface::C), nullptr);
        EXPECT_THAT(logged(), Contains("3 Creation of Presentation C Plugin failed"));
    }
    test::MemoryBackend::instance().reset();
    EXPECT_NE(test::makePlugin(Interface::C), nullptr);
}

TEST_F(BackendFaults, AFactoryThatIsAskedAndThrowsLeavesNoPlugin) {
    auto& backend = test::MemoryBackend::instance();
    backend.reset();
    struct Unheard {};
    for (const bool isStandard : {true, false}) {
        backend.hook = [&](test::BackendCall, const char*) {
            if (isStandard) {
                throw std::runtime_error("no service");
            }
            throw Unheard();
        };
        EXPECT_EQ(CreatePlugin("com.norvane.vantor.presentation"), nullptr);
    }
    backend.reset();
    EXPECT_THAT(logged(), testing::IsSupersetOf({"3 Couldn't create the plugin: no service",
                                                 "3 Couldn't create the plugin: unknown exception"}));
}

TEST_F(BackendFaults, DocumentsThatComeWhileTheBackendFailsToStartAreTurnedAway) {
    Scene scene;
    std::shared_ptr<IQuillApiCallbacks> receiver;
    scene.backend.hook = [&](BackendCall call, const char*) {
        if (call == BackendCall::Start) {
            receiver = scene.backend.receiver();
        }
    };
    scene.backend.answer(BackendCall::Start, QuillApiResult::NotConnected);
    EXPECT_EQ(scene.step("start"), -10);
    ASSERT_NE(receiver, nullptr);
    scene.step("notEnrolled");
    EXPECT_THAT(logged(), Contains("2 Unexpected state transition"));
    receiver.reset(); // whoever keeps it keeps the plugin from going
    scene.backend.answer(BackendCall::Start, QuillApiResult::Success);
    EXPECT_EQ(scene.step("start"), 0);
    EXPECT_TRUE(scene.enrols());
}

} // namespace
