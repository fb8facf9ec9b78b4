#include "tests/boundary/Scene.h"
#include "tests/support/Latch.h"
#include "tests/support/QuietLog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>

// Hosts that block, call back from inside, or throw.

namespace {

using test::Interface;
using test::Scene;

class HostFaults : public testing::Test {
protected:
    test::QuietLog quiet;
};

/// What a host may do on any thread at any time, its own callbacks included.
void useWhatNeedsNoLock(IPresentationPluginV3& plugin) {
    char buffer[64];
    std::uint32_t size = sizeof buffer;
    EXPECT_EQ(plugin.GetIdentity(buffer, &size), 0);
    EXPECT_EQ(plugin.GetLabel(buffer, &size), 0);
    EXPECT_EQ(plugin.GetDisplayVersion(buffer, &size), 0);
    EXPECT_TRUE(plugin.SupportsInterface("com.norvane.vantor.presentation", 3));
    EXPECT_TRUE(plugin.IsUIEnabled());
    EXPECT_TRUE(plugin.IsMultiUserModeEnabled());
    EXPECT_EQ(plugin.Encrypt(0, 0, 0, 0), -1);
    EXPECT_EQ(plugin.Decrypt(0, 0, buffer, &size), -2);
    EXPECT_EQ(plugin.GetPendingApprovalData(0, 0), -2);
    EXPECT_EQ(plugin.ApprovalEventNotification(0), -2);
    EXPECT_EQ(plugin.EventNotification("no event"), -10);
}

IPresentationPluginV3& made(std::unique_ptr<Plugin, bool (*)(Plugin*)>& plugin) {
    return static_cast<IPresentationPluginV3&>(*plugin);
}

std::unique_ptr<Plugin, bool (*)(Plugin*)> makeCpp() {
    test::MemoryBackend::instance().reset();
    return {CreatePlugin("com.norvane.vantor.presentation"), &DisposePlugin};
}

TEST_F(HostFaults, TextGettersWithoutASizeAreRefused) {
    auto owned = makeCpp();
    char buffer[64] = "untouched";
    EXPECT_EQ(made(owned).GetIdentity(buffer, nullptr), -10);
    EXPECT_EQ(made(owned).GetLabel(buffer, nullptr), -10);
    EXPECT_EQ(made(owned).GetDisplayVersion(nullptr, nullptr), -10);
    EXPECT_STREQ(buffer, "untouched");
}

TEST_F(HostFaults, WhileTheHostBlocksInANoticeWhatNeedsNoLockGoesOn) {
    Scene scene;
    test::Latch isInside(1);
    test::Latch mayLeave(1);
    std::atomic<bool> isFirst = true;
    ASSERT_EQ(scene.step("start"), 0);
    scene.play({"notEnrolled", "enroll", "failed"}); // the error popup is open
    scene.host.onNotice = [&](const char*) {
        if (isFirst.exchange(false)) {
            isInside.count_down();
            mayLeave.wait();
        }
    };
    std::thread deliverer([&] { scene.step("enrolled"); });
    isInside.wait();
    const std::size_t before = scene.host.notices;
    EXPECT_EQ(scene.plugin->EventNotification("<vtguiEvent id=\"wren_client_error_close_btn_OnPress\"/>"), 0);
    EXPECT_EQ(scene.plugin->EventNotification("no event"), -10);
    EXPECT_GE(scene.host.notices, before + 2);              // told to the host's log, and closed
    std::thread second([&] { scene.step("notEnrolled"); }); // has to wait
    mayLeave.count_down();
    deliverer.join();
    second.join();
    EXPECT_TRUE(scene.enrols());
}

TEST_F(HostFaults, AStopWaitsForTheNoticeThatTheHostBlocks) {
    Scene scene;
    test::Latch isInside(1);
    test::Latch mayLeave(1);
    std::atomic<bool> isFirst = true;
    std::atomic<bool> hasLeft = false;
    ASSERT_EQ(scene.step("start"), 0);
    scene.host.onNotice = [&](const char*) {
        if (isFirst.exchange(false)) {
            isInside.count_down();
            mayLeave.wait();
            hasLeft = true;
        }
    };
    std::thread deliverer([&] { scene.step("enrolled"); });
    isInside.wait();
    auto stopped = std::async(std::launch::async, [&] {
        const std::int32_t result = scene.step("stop");
        EXPECT_TRUE(hasLeft);
        return result;
    });
    mayLeave.count_down();
    deliverer.join();
    EXPECT_EQ(stopped.get(), 0);
    EXPECT_EQ(scene.host.stops, 1u);
}

TEST_F(HostFaults, AHostMayUseWhatNeedsNoLockFromInsideEveryCallback) {
    auto owned = makeCpp();
    IPresentationPluginV3& plugin = made(owned);
    test::BoundaryHost host;
    host.onNotice = [&](const char*) { useWhatNeedsNoLock(plugin); };
    ASSERT_EQ(plugin.Register("", 7, &host, &host), 0);
    ASSERT_EQ(plugin.Start(), 0);
    const auto& backend = test::MemoryBackend::instance();
    backend.deliver(test::Document::Status, "{}");
    plugin.EventNotification("<vtguiEvent id=\"quill_tile_enroll_action_btn_OnPress\"/>");
    EXPECT_EQ(plugin.Stop(0), 0);
    EXPECT_GE(host.notices, 6u);
}

/// The stories that take a plugin through all its screens.
const std::vector<std::vector<std::string_view>> stories{
    {"init", "notEnrolled", "enroll", "started", "login", "loggedIn", "enrolled", "complete"},
    {"notEnrolled", "enroll", "started", "login", "loginFailed", "failed", "complete", "enrolled"},
    {"notEnrolled", "enroll", "started", "cancel", "complete", "enroll", "failed", "error"},
    {"enrolled", "alert", "details", "posture", "authRequest", "noAlert", "closeAlert"},
    {"enrolled", "alert", "details", "details", "reEnroll", "started", "error"},
    {"enrolled", "authRequest", "verify", "verify", "authorized", "sync"},
    {"enrolled", "unenroll", "unenrollStarted", "notEnrolled", "unenrolled"},
    {"enrolled", "unenroll", "unenrollStarted", "error"},
};

TEST_F(HostFaults, AHostThatThrowsFromAnyOneNoticeFindsThePluginUsableAfterwards) {
    for (const Interface interface : {Interface::Cpp, Interface::C}) {
        for (const auto& story : stories) {
            bool hasThrown = true;
            for (std::size_t which = 1; hasThrown; ++which) {
                hasThrown = false;
                Scene scene(interface);
                std::size_t count = 0;
                scene.host.onNotice = [&](const char*) {
                    if (++count == which) {
                        hasThrown = true;
                        throw std::runtime_error("host");
                    }
                };
                const auto step = [&](std::string_view name) {
                    try {
                        scene.step(name);
                    } catch (const std::runtime_error&) {
                        // A host in C++ gets back what it threw while the event was told to its own log.
                        EXPECT_EQ(interface, Interface::Cpp);
                    }
                };
                step("start");
                for (const std::string_view name : story) {
                    step(name);
                }
                scene.host.onNotice = nullptr;
                if (scene.step("stop") == 0) {
                    ASSERT_EQ(scene.host.stops, 1u);
                }
                ASSERT_EQ(scene.step("start"), 0);
                ASSERT_TRUE(scene.enrols()) << story.front() << " notice " << which;
            }
        }
    }
}

TEST_F(HostFaults, WhatAHostThrowsMayBeNoExceptionAndStaysFromTheServiceAllTheSame) {
    Scene scene;
    ASSERT_EQ(scene.step("start"), 0);
    scene.host.onNotice = [](const char*) { throw 1; };
    EXPECT_NO_THROW(scene.play({"notEnrolled", "enrolled", "alert", "authRequest"}));
    scene.host.onNotice = nullptr;
    scene.settle();
    EXPECT_TRUE(scene.enrols());
}

TEST_F(HostFaults, AHostThatThrowsFromStopDoneIsStoppedAllTheSame) {
    class Throwing : public test::BoundaryHost {
        std::int32_t StopDone(std::uintptr_t) override { throw std::runtime_error("host"); }
    };
    auto owned = makeCpp();
    IPresentationPluginV3& plugin = made(owned);
    Throwing host;
    ASSERT_EQ(plugin.Register("", 7, &host, &host), 0);
    ASSERT_EQ(plugin.Start(), 0);
    EXPECT_EQ(plugin.Stop(0), -10);
    EXPECT_EQ(plugin.Stop(0), -10);
    EXPECT_EQ(plugin.Start(), 0);
    owned.reset(); // stops within
}

TEST_F(HostFaults, CallsOutOfPlaceFromManyThreadsAreAnsweredOrRefused) {
    Scene scene;
    std::atomic<unsigned> done = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int round = 0; round < 300; ++round) {
                scene.plugin->Start();
                scene.plugin->Stop(0);
                scene.plugin->press("quill_tile_enroll_action_btn");
            }
            ++done;
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(done, 4u);
    scene.step("stop");
    EXPECT_EQ(scene.backend.connectionCount(), 0u);
    EXPECT_EQ(scene.step("start"), 0);
    EXPECT_TRUE(scene.enrols());
}

} // namespace
