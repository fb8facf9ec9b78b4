#include "tests/module/ModuleSession.h"

#include <gtest/gtest.h>

namespace {

using test::Lines;
using test::only;
using test::withoutTrace;

class Lifecycle : public testing::Test {
protected:
    Lines run(std::string_view inputs) { return withoutTrace(session.run(inputs)); }
    void create() { run(R"({"do":"create","name":"com.norvane.vantor.presentation"})"); }
    void registerHost() {
        run(R"({"do":"register","arguments":"","callbacks":"host","translator":true,"handle":7})");
    }

    test::ModuleSession session;
};

const std::string unexpectedTransition = ": Unexpected state transition";
const std::string version = " WREN Presentation Plugin Version '5.1.11.2143'";

// Register.

TEST_F(Lifecycle, RegisterReportsTheFirstNullArgumentOnly) {
    create();
    EXPECT_EQ(run(R"({"do":"register","arguments":null,"callbacks":null,"translator":false,"handle":7})"),
              (Lines{"log 3 PresentationPluginImpl::Register: Arguments string is NULL", "result -4"}));
    EXPECT_EQ(run(R"({"do":"register","arguments":"x","callbacks":null,"translator":false,"handle":7})"),
              (Lines{"log 3 PresentationPluginImpl::Register: Presentation callback pointer is NULL",
                     "result -4"}));
    EXPECT_EQ(
        run(R"({"do":"register","arguments":"x","callbacks":"host","translator":false,"handle":7})"),
        (Lines{"log 3 PresentationPluginImpl::Register: Translator callback pointer is NULL", "result -4"}));
}

TEST_F(Lifecycle, AnyArgumentsTextWillDo) {
    for (const std::string arguments : {"", "a=b", "<xml/>"}) {
        create();
        EXPECT_EQ(run(R"({"do":"register","arguments":")" + arguments +
                      R"(","callbacks":"host","translator":true,"handle":0})"),
                  (Lines{"log 0 PresentationPluginImpl::Register: Registering" + version, "result 0"}));
    }
}

TEST_F(Lifecycle, ASecondRegisterIsRefusedAndTheFirstCallbacksStay) {
    create();
    registerHost();
    EXPECT_EQ(run(R"({"do":"register","arguments":"","callbacks":"other","translator":true,"handle":9})"),
              (Lines{"log 0 PresentationPluginImpl::Register: Registering" + version,
                     "log 2 PresentationPluginImpl::Register" + unexpectedTransition, "result -10"}));
    run(R"({"do":"start"})");
    for (const auto& output : session.outputs()) {
        if (output.at("out") == "notice") {
            EXPECT_EQ(output.at("callbacks"), "host");
            EXPECT_EQ(output.at("handle"), 7);
        }
    }
}

TEST_F(Lifecycle, TheHostHandleComesBackUnchanged) {
    create();
    run(R"({"do":"register","arguments":"","callbacks":"host","translator":true,"handle":4294967295})");
    run(R"({"do":"start"})");
    bool seen = false;
    for (const auto& output : session.outputs()) {
        if (output.at("out") == "notice") {
            EXPECT_EQ(output.at("handle"), 4294967295);
            seen = true;
        }
    }
    EXPECT_TRUE(seen);
}

// Start and stop.

TEST_F(Lifecycle, StartDrawsTheFirstScreenAndStartsTheBackend) {
    create();
    registerHost();
    const Lines lines = run(R"({"do":"start"})");
    EXPECT_EQ(lines.front(), "log 1 PresentationPluginImpl::Start: Starting" + version);
    EXPECT_EQ(
        test::screens(lines),
        (Lines{"tile setup Transition \"Initializing. Please wait...\" \"Initializing. Please wait...\" []",
               "adv-enrollment setup disabled", "adv-sync setup disabled \"None\"", "stats-overview setup",
               "stats-details setup"}));
    EXPECT_EQ(only("api", lines), (Lines{"api CreateApi", "api Start"}));
    EXPECT_EQ(lines.back(), "result 0");
}

TEST_F(Lifecycle, StartBeforeRegisterIsRefused) {
    create();
    EXPECT_EQ(run(R"({"do":"start"})"),
              (Lines{"log 1 PresentationPluginImpl::Start: Starting" + version,
                     "log 2 PresentationPluginImpl::Start" + unexpectedTransition, "result -10"}));
}

TEST_F(Lifecycle, StopBeforeStartIsRefusedWithoutStopDone) {
    create();
    registerHost();
    EXPECT_EQ(run(R"({"do":"stop"})"),
              (Lines{"log 1 PresentationPluginImpl::Stop: Stopping" + version,
                     "log 2 PresentationPluginImpl::Stop" + unexpectedTransition, "result -10"}));
}

TEST_F(Lifecycle, StopTreatsBothReasonsAlike) {
    for (const std::string reason : {"0", "1"}) {
        session.start();
        EXPECT_EQ(run(R"({"do":"stop","reason":)" + reason + "}"),
                  (Lines{"log 1 PresentationPluginImpl::Stop: Stopping" + version, "api Stop", "stop_done",
                         "result 0"}));
    }
}

TEST_F(Lifecycle, AStoppedPluginStartsAnewWithANewConnection) {
    session.start();
    run(R"({"do":"stop"})");
    const Lines lines = run(R"({"do":"start"})");
    EXPECT_EQ(only("api", lines), (Lines{"api CreateApi", "api Start"}));
    EXPECT_EQ(lines.back(), "result 0");
}

TEST_F(Lifecycle, AStartThatFailsMayBeRepeated) {
    create();
    registerHost();
    run(R"({"do":"backend","operation":"Start","result":6})");
    EXPECT_EQ(run(R"({"do":"start"})").back(), "result -10");
    EXPECT_EQ(run(R"({"do":"start"})").back(), "result 0");
}

// Unregister.

TEST_F(Lifecycle, UnregisterWhileStartedIsRefusedAndThePluginRunsOn) {
    session.start();
    EXPECT_EQ(run(R"({"do":"unregister"})"),
              (Lines{"log 0 PresentationPluginImpl::Unregister: Unregistering" + version,
                     "log 2 PresentationPluginImpl::Unregister" + unexpectedTransition, "result -10"}));
    EXPECT_EQ(run(R"({"do":"stop"})").back(), "result 0");
}

TEST_F(Lifecycle, AfterUnregisterANoticeHasNowhereToGo) {
    session.start();
    run(R"({"do":"stop"}
{"do":"unregister"})");
    EXPECT_EQ(withoutTrace(session.event("<vtguiEvent id=\"quill_tile_details_action_btn_OnPress\"/>")),
              (Lines{"log 3 PresentationPluginImpl::notifyVTGUI: UI callbacks not initialized",
                     "log 2 PresentationPluginImpl::EventNotification" + unexpectedTransition, "result 0"}));
}

// Disposal.

const std::string destroying = "log 0 PresentationPluginImpl::~PresentationPluginImpl: Destroying" + version;
const std::string destroyed = "log 0 PresentationPluginImpl::~PresentationPluginImpl: Destroyed" + version;
const std::string disposing = "log 0 DisposePlugin: Disposing Plugin";

TEST_F(Lifecycle, ARunningPluginIsStoppedAndUnregisteredWithStopDone) {
    session.start();
    const Lines traced = session.run(R"({"do":"dispose"})");
    EXPECT_EQ(withoutTrace(traced),
              (Lines{disposing, destroying, "api Stop", "stop_done", destroyed, "result true"}));
    EXPECT_EQ(
        std::count(traced.begin(), traced.end(),
                   "log 0 UnregisterCallbacks_a::operator (): state machine action UnregisterCallbacks_a"),
        1);
}

TEST_F(Lifecycle, ARegisteredPluginIsOnlyUnregistered) {
    create();
    registerHost();
    const Lines traced = session.run(R"({"do":"dispose"})");
    EXPECT_EQ(withoutTrace(traced), (Lines{disposing, destroying, destroyed, "result true"}));
    EXPECT_EQ(
        std::count(traced.begin(), traced.end(),
                   "log 0 UnregisterCallbacks_a::operator (): state machine action UnregisterCallbacks_a"),
        1);
}

TEST_F(Lifecycle, AnUnregisteredPluginHearsOfNothing) {
    create();
    EXPECT_EQ(session.run(R"({"do":"dispose"})"), (Lines{disposing, destroying, destroyed, "result true"}));
}

// What needs no registration.

TEST_F(Lifecycle, TextGettersTellTheSizeAndCopyTheText) {
    const std::pair<std::string, std::string> texts[] = {
        {"identity", "com.norvane.vantor.presentation.quill"},
        {"label", "Wren Gate"},
        {"display_version", "5.1.11.2143"}};
    create();
    for (const auto& [what, text] : texts) {
        const auto get = [&, name = what](const char* buffer, std::size_t size) {
            return run(R"({"do":"get","what":")" + name + R"(","buffer":)" + buffer + R"(,"size":)" +
                       std::to_string(size) + "}");
        };
        const std::string needed = std::to_string(text.size() + 1);
        EXPECT_EQ(get("false", 0), Lines{"result -3 size " + needed + " text null"});
        EXPECT_EQ(get("false", 100), Lines{"result -3 size " + needed + " text null"});
        EXPECT_EQ(get("true", text.size()), Lines{"result -3 size " + needed + " text null"});
        EXPECT_EQ(get("true", text.size() + 1), Lines{"result 0 size " + needed + " text " + text});
        EXPECT_EQ(get("true", 100), Lines{"result 0 size 100 text " + text});
    }
}

TEST_F(Lifecycle, TheVersionNeedsTwelveBytes) {
    create();
    EXPECT_EQ(run(R"({"do":"get","what":"display_version","buffer":true,"size":11})"),
              Lines{"result -3 size 12 text null"});
    EXPECT_EQ(run(R"({"do":"get","what":"display_version","buffer":true,"size":12})"),
              Lines{"result 0 size 12 text 5.1.11.2143"});
}

TEST_F(Lifecycle, SupportsBothNamesInVersionsOneToThree) {
    create();
    const auto supports = [&](const std::string& name, int wanted) {
        return run(R"({"do":"supports","name":)" + name + R"(,"version":)" + std::to_string(wanted) + "}");
    };
    for (const std::string name :
         {R"("com.norvane.vantor.presentation")", R"("c_com.norvane.vantor.presentation")"}) {
        EXPECT_EQ(supports(name, 0), Lines{"result false"});
        EXPECT_EQ(supports(name, 1), Lines{"result true"});
        EXPECT_EQ(supports(name, 2), Lines{"result true"});
        EXPECT_EQ(supports(name, 3), Lines{"result true"});
        EXPECT_EQ(supports(name, 4), Lines{"result false"});
        EXPECT_EQ(supports(name, -1), Lines{"result false"});
    }
    EXPECT_EQ(supports("null", 3), Lines{"result false"});
    EXPECT_EQ(supports(R"("com.norvane.vantor.presentation.quill")", 3), Lines{"result false"});
}

TEST_F(Lifecycle, InertOperationsAnswerWithoutRegistration) {
    create();
    const auto inert = [&](const std::string& operation) {
        return run(R"({"do":"inert","operation":")" + operation + "\"}");
    };
    EXPECT_EQ(inert("IsUIEnabled"), Lines{"result true"});
    EXPECT_EQ(inert("IsMultiUserModeEnabled"), Lines{"result true"});
    EXPECT_EQ(inert("Encrypt"), Lines{"result -1"});
    EXPECT_EQ(inert("Decrypt"), Lines{"result -2 size 0 first_byte 0"});
    EXPECT_EQ(run(R"({"do":"inert","operation":"Decrypt","output":false})"),
              Lines{"result -2 size 0 first_byte null"});
    EXPECT_EQ(inert("GetPendingApprovalData"), Lines{"result -2"});
    EXPECT_EQ(inert("ApprovalEventNotification"), Lines{"result -2"});
}

} // namespace
