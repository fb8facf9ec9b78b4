#include "common2/data/StringTrie.h"
#include "tests/allocation/FailingAllocation.h"
#include "tests/boundary/Scene.h"
#include "tests/support/QuietLog.h"
#include "xml/XmlUIEvent.h"

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <new>
#include <string>

// Memory that runs out at any one allocation: nothing is left half done that could be seen, and nothing is
// lost but what was being done.

namespace {

using test::FailingAllocation;
using test::Interface;
using test::Scene;

class AllocationFaults : public testing::TestWithParam<Interface> {
protected:
    test::QuietLog quiet;
};

/// Takes a step in which one allocation fails. A host in C++ may get the exception; a service never does.
/// @return whether it came to that
bool stepWithout(Scene& scene, std::string_view step, std::size_t allocation, Interface interface) {
    bool isThrown = false;
    bool hasFailed = false;
    {
        const FailingAllocation failing(allocation);
        try {
            scene.step(step);
        } catch (const std::bad_alloc&) {
            isThrown = true;
        }
        hasFailed = failing.hasFailed();
    }
    EXPECT_FALSE(isThrown && interface == Interface::C) << step;
    return hasFailed;
}

/// The notices of a step, without those that only copy it to the host's log.
std::vector<std::string> shown(Scene& scene, std::string_view step) {
    std::vector<std::string> notices;
    scene.host.onNotice = [&](const char* xml) {
        const std::string_view text(xml);
        if (text.find("type=\"apilog\"") == std::string_view::npos) {
            // A time stamp is the only thing that may differ from one time to the next.
            const std::size_t stamp = text.find(" timestamp=\"");
            const std::size_t end = text.find('"', stamp + 12);
            notices.push_back(std::string(text.substr(0, stamp)).append(text.substr(end + 1)));
        }
    };
    scene.step(step);
    scene.host.onNotice = nullptr;
    return notices;
}

/// The main screen alone: toasts and the tile's line for the message history tell of a change from what was
/// drawn before, and what a failure kept from being drawn is none.
std::vector<std::string> mainScreen(std::vector<std::string> notices) {
    std::erase_if(notices,
                  [](const std::string& xml) { return xml.find(" type=\"popup\"") != std::string::npos; });
    for (std::string& notice : notices) {
        const std::size_t line = notice.find("\t<log messagehistory=");
        if (line != std::string::npos) {
            notice.erase(line, notice.find('\n', line) + 1 - line);
        }
    }
    return notices;
}

TEST_P(AllocationFaults, AnyOneOfAnyStepAtAnyStageLeavesThePluginUsable) {
    for (const test::Stage& stage : test::allStages()) {
        for (const std::string_view step : test::allSteps()) {
            // A plugin for each allocation would take minutes: each goes on where the last one left off.
            Scene scene(GetParam());
            ASSERT_EQ(scene.step("start"), 0);
            scene.play(stage.steps);
            bool hasFailed = true;
            for (std::size_t allocation = 1; hasFailed; ++allocation) {
                hasFailed = stepWithout(scene, step, allocation, GetParam());
            }
            scene.settle();
            ASSERT_TRUE(scene.enrols()) << stage.name << ", then " << step;
            ASSERT_EQ(scene.step("stop"), 0);
            ASSERT_EQ(scene.host.stops, 1u);
        }
    }
}

TEST_P(AllocationFaults, ADocumentIsCachedWhollyOrNotAtAll) {
    const std::vector<std::pair<std::string_view, std::string_view>> changes{{"notEnrolled", "enrolled"},
                                                                             {"enrolled", "error"},
                                                                             {"error", "notEnrolled"},
                                                                             {"noAlert", "alert"},
                                                                             {"alert", "authRequest"}};
    std::size_t kept = 0;
    std::size_t taken = 0;
    for (const auto& [first, second] : changes) {
        std::vector<std::string> whole;
        std::vector<std::string> wholeBack;
        {
            Scene reference(GetParam());
            reference.play({"start", "enrolled", first});
            whole = shown(reference, second);
            wholeBack = shown(reference, first);
        }
        ASSERT_FALSE(whole.empty());
        bool hasFailed = true;
        for (std::size_t allocation = 1; hasFailed; ++allocation) {
            Scene scene(GetParam());
            scene.play({"start", "enrolled", first});
            hasFailed = stepWithout(scene, second, allocation, GetParam());
            const std::vector<std::string> again = shown(scene, second);
            if (again.empty()) {
                ++taken; // it is no news
            } else {
                ++kept;
                ASSERT_EQ(mainScreen(again), mainScreen(whole))
                    << first << " to " << second << ", allocation " << allocation;
            }
            // Either way the former document is news, and shows as it does without any failure.
            ASSERT_EQ(mainScreen(shown(scene, first)), mainScreen(wholeBack))
                << first << " to " << second << ", allocation " << allocation;
        }
    }
    EXPECT_GT(kept, 0u);
    EXPECT_GT(taken, 0u);
}

TEST_P(AllocationFaults, AnyOneOfALifecycleCallLeavesThePluginUsable) {
    for (const std::string_view step : {"start", "stop"}) {
        bool hasFailed = true;
        for (std::size_t allocation = 1; hasFailed; ++allocation) {
            Scene scene(GetParam());
            if (step == "stop") {
                scene.play({"start", "enrolled"});
            }
            hasFailed = stepWithout(scene, step, allocation, GetParam());
            scene.step("stop");
            ASSERT_EQ(scene.step("start"), 0) << step << ", allocation " << allocation;
            ASSERT_TRUE(scene.enrols()) << step << ", allocation " << allocation;
        }
    }
}

TEST_P(AllocationFaults, AnyOneOfTheMakingYieldsNoPluginOrAWholeOne) {
    bool hasFailed = true;
    std::size_t made = 0;
    for (std::size_t allocation = 1; hasFailed; ++allocation) {
        test::MemoryBackend::instance().reset();
        std::unique_ptr<test::BoundaryPlugin> plugin;
        {
            const FailingAllocation failing(allocation);
            try {
                plugin = test::makePlugin(GetParam());
            } catch (const std::bad_alloc&) {
                // of the test's own part
            }
            hasFailed = failing.hasFailed();
        }
        if (plugin) {
            test::BoundaryHost host;
            ++made;
            ASSERT_EQ(plugin->Register(host), 0) << allocation;
            ASSERT_EQ(plugin->Start(), 0) << allocation;
            plugin.reset();
        }
    }
    EXPECT_GT(made, 0u);
}

TEST_P(AllocationFaults, WithoutAnyMemoryAPluginCanStillBeStoppedAndDisposedOf) {
    for (const test::Stage& stage : test::allStages()) {
        Scene scene(GetParam());
        scene.step("start");
        scene.play(stage.steps);
        {
            const test::NoAllocation none;
            EXPECT_EQ(scene.step("stop"), 0);
        }
        EXPECT_EQ(scene.host.stops, 1u) << stage.name;
        scene.step("start");
        {
            const test::NoAllocation none;
            scene.plugin.reset();
        }
        EXPECT_EQ(scene.host.stops, 2u) << stage.name;
    }
}

INSTANTIATE_TEST_SUITE_P(BothInterfaces, AllocationFaults, testing::Values(Interface::Cpp, Interface::C),
                         [](const auto& parameter) {
                             return std::string(parameter.param == Interface::Cpp ? "Cpp" : "C");
                         });

TEST(AllocationFault, WithTheLogOpenADocumentLosesLinesAtMost) {
    Scene scene;
    scene.play({"start", "enrolled"});
    bool hasFailed = true;
    for (std::size_t allocation = 1; hasFailed; ++allocation) {
        hasFailed = stepWithout(scene, allocation % 2 ? "alert" : "notEnrolled", allocation, Interface::Cpp);
    }
    const test::QuietLog quiet;
    scene.settle();
    EXPECT_TRUE(scene.enrols());
}

TEST(AllocationFault, ADeepTreeGoesWithoutMemoryAndWithoutADeepStack) {
    boost::thread::attributes smallStack;
    smallStack.set_stack_size(256 * 1024);
    boost::thread worker(smallStack, [] {
        auto tree = std::make_unique<StringTrie<int>>();
        std::string key;
        for (int depth = 0; depth < 2000; ++depth) {
            tree->Insert(key += 'a', depth, true);
        }
        const test::NoAllocation none;
        tree.reset();
    });
    worker.join();
}

TEST(AllocationFault, AnEventDocumentThatCannotBeReadCanBeReadAgain) {
    XmlUIEvent event("<vtguiEvent id=\"first\"><a id=\"b\" c=\"d\"/></vtguiEvent>");
    bool hasFailed = true;
    for (std::size_t allocation = 1; hasFailed; ++allocation) {
        {
            const FailingAllocation failing(allocation);
            try {
                event.parse("<vtguiEvent id=\"second, longer than any short text\"><a id=\"b\" "
                            "c=\"e\"/></vtguiEvent>");
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(event.getControl("b").isNull());
            }
            hasFailed = failing.hasFailed();
        }
        ASSERT_TRUE(event.parse("<vtguiEvent id=\"first\"><a id=\"b\" c=\"d\"/></vtguiEvent>"));
        ASSERT_EQ(event.getControl("b").getAttribute("c"), "d");
    }
}

} // namespace
