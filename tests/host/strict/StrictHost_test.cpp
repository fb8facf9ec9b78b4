// Each rule, broken by a plugin or a host that a test makes up.
#include "host/strict/StrictHost.h"

#include "tests/host/NoticeText.h"
#include "tests/host/Paths.h"
#include "tests/host/strict/FakePlugin.h"
#include "tests/support/MatchesPattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace {

using test::noticeText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uintptr_t handle = 7;

const std::string buttonElement =
    R"(<button id="b" label="B" tooltip="B" hidden="false" disabled="false" OnPress="b_OnPress"/>)";
const std::string press = R"(<vtguiEvent id="b_OnPress"/>)";

class StrictHost : public ::testing::Test {
protected:
    StrictHost() {
        callbacks = strict.makeCallbacks([this](std::uintptr_t, const char*) { run(onNotice); },
                                         [this](std::uintptr_t) { run(onStopDone); });
        plugin = strict.watched(std::make_unique<test::FakePlugin>(script));
        script.onStop = [this] {
            stopDone();
            return presentationDone;
        };
    }

    static void run(const std::function<void()>& action) {
        if (action) {
            action();
        }
    }
    std::int32_t doRegister(std::uintptr_t given = handle) {
        return plugin->Register("", given, callbacks.get(), nullptr);
    }
    void notify(const std::string& xml, std::uintptr_t given = handle) {
        callbacks->Notify(given, xml.c_str());
    }
    void stopDone(std::uintptr_t given = handle) { callbacks->StopDone(given); }

    std::vector<std::string> broken; ///< names of rules
    std::function<void()> onNotice;
    std::function<void()> onStopDone;
    host::StrictHost strict{
        [this](const host::Violation& violation) { broken.emplace_back(violation.name()); }};
    test::FakePlugin::Script script;
    std::unique_ptr<host::HostCallbacks> callbacks;
    std::unique_ptr<host::PluginObject> plugin;
};

TEST_F(StrictHost, HasNothingToSayOfALifeByTheRules) {
    doRegister();
    notify(noticeText("setup", buttonElement));
    notify(noticeText("update", buttonElement));
    notify(noticeText("popup", R"(<popup timestamp="t" id="p" type="custom"><title value="T"/></popup>)"));
    notify(noticeText("apilog", "<statusnotification>{}</statusnotification>"));
    EXPECT_EQ(plugin->EventNotification(press.c_str()), presentationDone);
    plugin->Stop(0);
    plugin->Start();
    plugin->Stop(0);
    plugin->Unregister();
    doRegister(8);
    notify(noticeText("setup", buttonElement), 8);
    EXPECT_TRUE(plugin->dispose());
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, RefusesCallsFromInsideNotify) {
    doRegister();
    std::vector<std::int32_t> results;
    std::optional<bool> isDisposed;
    bool isReached = false;
    for (auto* action : {&script.onStart, &script.onRegister, &script.onUnregister, &script.onEvent}) {
        *action = [&] {
            isReached = true;
            return presentationDone;
        };
    }
    onNotice = [&] {
        results = {doRegister(), plugin->Start(), plugin->Stop(0), plugin->Unregister(),
                   plugin->EventNotification(press.c_str())};
        isDisposed = plugin->dispose();
    };
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(results, ElementsAre(-10, -10, -10, -10, -10));
    EXPECT_EQ(isDisposed, false);
    EXPECT_FALSE(isReached);
    EXPECT_EQ(broken, std::vector<std::string>(6, "call-from-callback"));
    EXPECT_EQ(plugin->Stop(0), presentationDone) << "it is usable afterwards";
}

TEST_F(StrictHost, RefusesCallsFromInsideStopDone) {
    doRegister();
    onStopDone = [this] { EXPECT_EQ(plugin->Start(), presentationFailed); };
    plugin->Stop(0);
    EXPECT_THAT(broken, ElementsAre("call-from-callback"));
}

TEST_F(StrictHost, LetsCallbacksAskForTextsAndOtherThreadsCall) {
    doRegister();
    onNotice = [this] {
        EXPECT_TRUE(plugin->IsUIEnabled());
        EXPECT_EQ(plugin->GetLabel(nullptr, nullptr), presentationFailed);
        EXPECT_TRUE(plugin->SupportsInterface("n", 3));
        EXPECT_EQ(std::async(std::launch::async, [this] { return plugin->Start(); }).get(), presentationDone);
    };
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, LetsCallbacksCallAnotherPlugin) {
    doRegister();
    test::FakePlugin::Script otherScript;
    const auto other = strict.watched(std::make_unique<test::FakePlugin>(otherScript));
    onNotice = [&] { EXPECT_EQ(other->Start(), presentationDone); };
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, LetsACallbackCloseTheErrorPopup) {
    doRegister();
    notify(noticeText("popup", R"(<popup timestamp="t" id="wren_client_error_dialog" type="custom">)"
                               R"(<closebutton id="c" OnClose="c_OnClose"/></popup>)"));
    onNotice = [this] {
        EXPECT_EQ(plugin->EventNotification("<vtguiEvent id=\"c_OnClose\"/>"), presentationDone);
    };
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, UnreadableNotices) {
    doRegister();
    for (const std::string xml :
         {"", "text", "<vtguiNotice>", "<vtguiNotice></other>", "<vtguiEvent/>",
          "<vtguiNotice/><vtguiNotice/>", "<vtguiNotice><label></vtguiNotice></label>", "\xFF"}) {
        broken.clear();
        notify(xml);
        EXPECT_THAT(broken, ElementsAre("readable-notice")) << xml;
    }
    broken.clear();
    callbacks->Notify(handle, nullptr);
    EXPECT_THAT(broken, ElementsAre("readable-notice"));
}

TEST_F(StrictHost, NoticeWithWordsOfItsOwn) {
    doRegister();
    notify(noticeText("setup", R"(<blink id="x"/>)"));
    EXPECT_THAT(broken, ElementsAre("unknown-element"));
}

TEST_F(StrictHost, UpdateOfWhatWasNeverSetUp) {
    doRegister();
    notify(noticeText("update", buttonElement));
    notify(noticeText("update", R"(<outlinelistbox id="list" updaterows="true" num_columns="2"/>)"));
    EXPECT_THAT(broken, ElementsAre("update-before-setup", "update-before-setup"));
    notify(noticeText("setup", buttonElement));
    notify(noticeText("update", buttonElement));
    notify(noticeText("update", R"(<log messagehistory="h"/><application show="false"/>)"));
    EXPECT_EQ(broken.size(), 2u);
}

TEST_F(StrictHost, EventThatNoNoticeHasBound) {
    doRegister();
    bool isSent = false;
    script.onEvent = [&] {
        isSent = true;
        return presentationFailed;
    };
    EXPECT_EQ(plugin->EventNotification(press.c_str()), presentationFailed);
    EXPECT_THAT(broken, ElementsAre("unknown-event"));
    EXPECT_TRUE(isSent) << "it is reported, not refused";
    notify(noticeText("setup", buttonElement));
    plugin->EventNotification(press.c_str());
    plugin->EventNotification("no event document");
    plugin->EventNotification(nullptr);
    EXPECT_EQ(broken.size(), 1u);
}

TEST_F(StrictHost, EventsStayKnownWhileThePluginLives) {
    doRegister();
    notify(noticeText("setup", buttonElement));
    plugin->Unregister();
    doRegister(8);
    plugin->EventNotification(press.c_str());
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, ForeignHandle) {
    doRegister();
    notify(noticeText("setup", buttonElement), 9);
    stopDone(9);
    EXPECT_THAT(broken, ElementsAre("foreign-handle", "foreign-handle"));
}

TEST_F(StrictHost, RefusedRegistrationOpensNoChannel) {
    script.onRegister = [] { return presentationFailed; };
    doRegister();
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, ElementsAre("foreign-handle"));
}

TEST_F(StrictHost, SecondRegistrationThatIsRefusedLeavesTheFirst) {
    doRegister();
    script.onRegister = [] { return presentationFailed; };
    doRegister();
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, CallbackAfterUnregister) {
    doRegister();
    script.onUnregister = [] { return presentationFailed; };
    plugin->Unregister();
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, IsEmpty()) << "it failed";
    script.onUnregister = nullptr;
    plugin->Unregister();
    notify(noticeText("setup", buttonElement));
    stopDone();
    EXPECT_THAT(broken, ElementsAre("callback-after-unregister", "callback-after-unregister"));
    doRegister();
    notify(noticeText("setup", buttonElement));
    EXPECT_EQ(broken.size(), 2u);
}

TEST_F(StrictHost, CallbackAfterDispose) {
    doRegister();
    plugin->dispose();
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, ElementsAre("callback-after-dispose"));
}

TEST_F(StrictHost, CallbackAfterAnEndWithoutDispose) {
    doRegister();
    plugin.reset();
    notify(noticeText("setup", buttonElement));
    EXPECT_THAT(broken, ElementsAre("callback-after-dispose"));
}

TEST_F(StrictHost, StopDoneFromWithinTheEndIsAllowed) {
    doRegister();
    script.onDispose = script.onStop;
    plugin->dispose();
    EXPECT_THAT(broken, IsEmpty());
}

TEST_F(StrictHost, StopDoneTwice) {
    doRegister();
    script.onStop = [this] {
        stopDone();
        stopDone();
        return presentationDone;
    };
    plugin->Stop(0);
    EXPECT_THAT(broken, ElementsAre("stop-done-twice"));
}

TEST_F(StrictHost, StopDoneUnasked) {
    doRegister();
    stopDone();
    plugin->Stop(0);
    stopDone();
    EXPECT_THAT(broken, ElementsAre("stop-done-unasked", "stop-done-unasked"));
}

TEST(StrictHostProbe, CallThatDoesNotComeBackIsReportedWithAllStacks) {
    std::promise<std::string> overdue;
    std::once_flag first; // with no time at all, later calls may be overdue as well
    host::StrictHost strict(
        [&](const host::Violation& violation) {
            std::call_once(first,
                           [&] { overdue.set_value(std::string(violation.name()) + " " + violation.text); });
        },
        std::chrono::milliseconds(0));
    test::FakePlugin::Script script;
    std::string told;
    script.onStart = [&] {
        told = overdue.get_future().get(); // stuck until the probe has spoken
        return presentationDone;
    };
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(strict.watched(std::make_unique<test::FakePlugin>(script))->Start(), presentationDone);
    const std::string stacks = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(told, "call-overdue Start");
    EXPECT_THAT(stacks, test::ContainsPattern(test::stackPattern));
}

TEST(Violations, SayWhatWasBrokenAndWhatTheRuleIs) {
    EXPECT_EQ(host::lineOf({host::Rule::StopDoneTwice, "again"}),
              "rule broken: stop-done-twice: again (A stop ends with StopDone once.)");
}

} // namespace
