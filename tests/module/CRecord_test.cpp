#include "tests/module/ModuleSession.h"

#include "host/PluginModule.h"
#include "tests/support/Documents.h"
#include "wren/PresentationPluginCbased.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using test::Lines;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string create = R"({"do":"create","name":"c_com.norvane.vantor.presentation","kind":"c"}
)";
const std::string registerHost =
    R"({"do":"register","arguments":"","callbacks":"host","translator":true,"handle":7}
)";
const std::string start = R"({"do":"start"}
)";
const std::string ready = create + registerHost + start;

class CRecord : public testing::Test {
protected:
    Lines run(const std::string& inputs) { return test::withoutTrace(session.run(inputs)); }
    Lines results(const std::string& inputs) { return test::only("result", session.run(inputs)); }
    Lines deliverStatus() {
        return session.deliver("StatusNotification", test::textOf(test::notEnrolledStatusDocument()));
    }
    bool showsTheNextStatus() { return !test::only("notice", deliverStatus()).empty(); }
    test::ModuleSession session;
};

const std::string createRefusedName = R"({"do":"create","kind":"c","name":)";

TEST_F(CRecord, CreateRunsTheChecksAndThenThePlainCreate) {
    EXPECT_THAT(run(create),
                ElementsAre("log 0 CreateCbasedPlugin: Creating Plugin",
                            "log 0 CreatePlugin: Creating Plugin", "api GetQuillApiFactory",
                            "log 0 PresentationPluginImpl::PresentationPluginImpl: Created WREN Presentation "
                            "Plugin Version '5.1.11.2143'",
                            "log 1 CPresentationPluginShim::CPresentationPluginShim: Leveraging C++ Plugin "
                            "interface within C based Plugin interface shim",
                            "log 1 CreateCbasedPresentationPlugin: Created C Plugin interface "
                            "'c_com.norvane.vantor.presentation'",
                            "created true"));
}

TEST_F(CRecord, NullNameIsRefused) {
    EXPECT_THAT(run(createRefusedName + "null}"),
                ElementsAre("log 3 CreateCbasedPlugin: NULL interface name", "created false"));
}

TEST_F(CRecord, NamesThatDifferInAnyByteAreRefused) {
    for (const std::string name :
         {"com.norvane.vantor.presentation", "C_com.norvane.vantor.presentation",
          "c_com.norvane.vantor.presentation ", "c_com.norvane.vantor.presentatio", ""}) {
        EXPECT_THAT(run(createRefusedName + "\"" + name + "\"}"),
                    ElementsAre("log 3 CreateCbasedPlugin: Wrong create method for interface '" + name + "'",
                                "created false"));
    }
}

TEST_F(CRecord, IsOfferedByNameAndMadeByItsOwnFunctionOnly) {
    EXPECT_THAT(session.run(R"({"do":"interfaces"})"),
                Contains(testing::HasSubstr(R"("name":"c_com.norvane.vantor.presentation","version":3)")));
    EXPECT_THAT(run(R"({"do":"create","name":"c_com.norvane.vantor.presentation","kind":"cpp"})"),
                ElementsAre("log 3 CreatePlugin: Wrong create method for interface "
                            "'c_com.norvane.vantor.presentation'",
                            "created false"));
    EXPECT_THAT(run(create), Contains("created true"));
}

TEST_F(CRecord, AFactoryFailureLeavesNothing) {
    session.run(R"({"do":"backend","operation":"GetQuillApiFactory","result":8})");
    EXPECT_THAT(run(create),
                ElementsAre("log 0 CreateCbasedPlugin: Creating Plugin",
                            "log 0 CreatePlugin: Creating Plugin", "api GetQuillApiFactory",
                            "log 3 CreatePlugin: GetQuillApiFactory returned error InvalidState",
                            "log 3 CPresentationPluginShim::CPresentationPluginShim: CreatePlugin failed",
                            "log 3 CreateCbasedPresentationPlugin: Creation of Presentation C Plugin failed",
                            "created false"));
}

TEST_F(CRecord, OffersTheInterfaceUnderBothNames) {
    session.run(create);
    EXPECT_THAT(results(R"({"do":"supports","name":"c_com.norvane.vantor.presentation","version":3}
{"do":"supports","name":"com.norvane.vantor.presentation","version":1}
{"do":"supports","name":"c_com.norvane.vantor.presentation","version":4}
{"do":"supports","name":null,"version":3})"),
                ElementsAre("result true", "result true", "result false", "result false"));
}

TEST_F(CRecord, HostThatRegistersNullRecordsIsServedAndHearsNothing) {
    const std::string registerNobody =
        R"({"do":"register","arguments":"","callbacks":null,"translator":false,"handle":7}
)";
    const Lines begin = session.run(create + registerNobody + start);
    EXPECT_THAT(test::only("result", begin), ElementsAre("result 0", "result 0"));
    EXPECT_THAT(begin, Contains("api Start"));
    const Lines status = deliverStatus();
    EXPECT_THAT(status, Contains(testing::HasSubstr("Tile Status updated to: Registration is required")));
    const Lines end = session.run(R"({"do":"stop"}
{"do":"unregister"})");
    EXPECT_THAT(test::only("result", end), ElementsAre("result 0", "result 0"));
    for (const Lines& lines : {begin, status, end}) {
        EXPECT_THAT(test::only("notice", lines), IsEmpty());
        EXPECT_THAT(lines, testing::Not(Contains("stop_done")));
    }
}

TEST_F(CRecord, NullArgumentsAreStillRefused) {
    session.run(create);
    EXPECT_THAT(run(R"({"do":"register","arguments":null,"callbacks":null,"translator":false,"handle":7})"),
                ElementsAre("log 3 PresentationPluginImpl::Register: Arguments string is NULL", "result -4"));
}

TEST_F(CRecord, ReasonOutOfRangeLeavesThePluginRunning) {
    session.run(ready);
    for (const std::string reason : {"2", "3", "4294967295"}) {
        EXPECT_THAT(run(R"({"do":"stop","reason":)" + reason + "}"),
                    ElementsAre("log 3 CPresentationPluginShim::Stop: Reason out of range", "result -10"));
        EXPECT_TRUE(showsTheNextStatus());
    }
}

TEST_F(CRecord, EitherReasonStopsThePlugin) {
    for (const std::string reason : {"0", "1"}) {
        session.run(ready);
        const Lines lines = session.run(R"({"do":"stop","reason":)" + reason + "}");
        EXPECT_THAT(lines, Contains("stop_done"));
        EXPECT_THAT(lines, Contains("api Stop"));
        EXPECT_EQ(lines.back(), "result 0");
        session.run(R"({"do":"dispose"})");
    }
}

TEST_F(CRecord, NullHandleGivesOneLogLineForEachCall) {
    session.run(ready);
    const auto expectRefusal = [&](const std::string& operation, const std::string& call,
                                   const std::string& result) {
        EXPECT_THAT(session.run(call.substr(0, call.size() - 1) + R"(,"null_handle":true})"),
                    ElementsAre("log 3 CPresentationPluginShim::" + operation + ": NULL shim handle",
                                "result " + result));
    };
    expectRefusal("SupportsInterface",
                  R"({"do":"supports","name":"com.norvane.vantor.presentation","version":3})", "false");
    expectRefusal("Register",
                  R"({"do":"register","arguments":"","callbacks":"h","translator":true,"handle":1})", "-10");
    expectRefusal("Start", R"({"do":"start"})", "-10");
    expectRefusal("Stop", R"({"do":"stop","reason":2})", "-10");
    expectRefusal("Unregister", R"({"do":"unregister"})", "-10");
    expectRefusal("GetIdentity", R"({"do":"get","what":"identity","buffer":true,"size":9})",
                  "-10 size 9 text null");
    expectRefusal("GetLabel", R"({"do":"get","what":"label","buffer":true,"size":9})",
                  "-10 size 9 text null");
    expectRefusal("GetDisplayVersion", R"({"do":"get","what":"display_version","buffer":false,"size":0})",
                  "-10 size 0 text null");
    expectRefusal("EventNotification", R"({"do":"event","xml":"<vtguiEvent/>"})", "-10");
    expectRefusal("Encrypt", R"({"do":"inert","operation":"Encrypt"})", "-10");
    expectRefusal("Decrypt", R"({"do":"inert","operation":"Decrypt"})", "-10 size 2 first_byte 63");
    expectRefusal("GetPendingApprovalData", R"({"do":"inert","operation":"GetPendingApprovalData"})", "-10");
    expectRefusal("ApprovalEventNotification", R"({"do":"inert","operation":"ApprovalEventNotification"})",
                  "-10");
    expectRefusal("IsUIEnabled", R"({"do":"inert","operation":"IsUIEnabled"})", "false");
    expectRefusal("IsMultiUserModeEnabled", R"({"do":"inert","operation":"IsMultiUserModeEnabled"})",
                  "false");
    EXPECT_TRUE(showsTheNextStatus()) << "the plugin behind it is as it was";
}

TEST_F(CRecord, AnswersAsTheClassDoes) {
    session.run(create);
    EXPECT_THAT(results(R"({"do":"get","what":"identity","buffer":true,"size":100}
{"do":"get","what":"label","buffer":true,"size":100}
{"do":"get","what":"display_version","buffer":true,"size":11}
{"do":"get","what":"display_version","buffer":true,"size":12}
{"do":"inert","operation":"IsUIEnabled"}
{"do":"inert","operation":"IsMultiUserModeEnabled"}
{"do":"inert","operation":"Encrypt"}
{"do":"inert","operation":"Decrypt"}
{"do":"inert","operation":"Decrypt","output":false}
{"do":"inert","operation":"GetPendingApprovalData"}
{"do":"inert","operation":"ApprovalEventNotification"}
{"do":"event","xml":"no event"})"),
                ElementsAre("result 0 size 100 text com.norvane.vantor.presentation.quill",
                            "result 0 size 100 text Wren Gate", "result -3 size 12 text null",
                            "result 0 size 12 text 5.1.11.2143", "result true", "result true", "result -1",
                            "result -2 size 0 first_byte 0", "result -2 size 0 first_byte null", "result -2",
                            "result -2", "result -10"));
}

TEST_F(CRecord, FailedUnregisterKeepsTheRecordsInPlace) {
    session.run(ready);
    EXPECT_THAT(results(R"({"do":"unregister"})"), ElementsAre("result -10"));
    EXPECT_TRUE(showsTheNextStatus());
    EXPECT_THAT(session.run(R"({"do":"stop"})"), Contains("stop_done"));
}

TEST_F(CRecord, RefusedRegisterStillChangesWhoHears) {
    session.run(ready);
    EXPECT_THAT(
        results(R"({"do":"register","arguments":"","callbacks":"other","translator":true,"handle":8})"),
        ElementsAre("result -10"));
    session.run(R"({"do":"stop"})");
    for (const auto& output : session.outputs()) {
        if (output.at("out") == "stop_done") {
            EXPECT_EQ(output.at("callbacks"), "other");
            EXPECT_EQ(output.at("handle"), 7) << "the plugin's own registration is the first one";
        }
    }
}

TEST_F(CRecord, DisposeOfARunningPluginStopsItFirst) {
    session.run(ready);
    const Lines lines = run(R"({"do":"dispose"})");
    EXPECT_EQ(lines.front(), "log 0 DisposeCbasedPlugin: Disposing Plugin");
    EXPECT_EQ(lines.at(1), "log 0 DisposePlugin: Disposing Plugin");
    EXPECT_THAT(lines, Contains("stop_done"));
    EXPECT_EQ(lines.at(lines.size() - 2), "log 1 DisposeCbasedPresentationPlugin: Disposed C Plugin for "
                                          "interface 'c_com.norvane.vantor.presentation'");
    EXPECT_EQ(lines.back(), "result true");
}

/// The address follows, which each system spells in its own way.
const auto namesAnUnrecognizedPlugin =
    testing::StartsWith("log 3 DisposeCbasedPresentationPlugin: Unrecognized C Plugin: ");

TEST_F(CRecord, SecondDisposeIsRefused) {
    session.run(create + R"({"do":"dispose"})");
    EXPECT_THAT(run(R"({"do":"dispose"})"), ElementsAre("log 0 DisposeCbasedPlugin: Disposing Plugin",
                                                        namesAnUnrecognizedPlugin, "result false"));
}

TEST_F(CRecord, SecondDisposeDoesNotReachALaterRecord) {
    session.run(create + R"({"do":"dispose"}
{"do":"create","object":"q","name":"c_com.norvane.vantor.presentation","kind":"c"})");
    EXPECT_THAT(results(R"({"do":"dispose"})"), ElementsAre("result false"));
    EXPECT_THAT(results(R"({"do":"stop","object":"q"})"), ElementsAre("result -10"));
}

TEST_F(CRecord, DisposingOfWhatCouldNotBeMadeIsRefused) {
    session.run(createRefusedName + "null}");
    EXPECT_THAT(results(R"({"do":"dispose"})"), ElementsAre("result false"));
}

TEST_F(CRecord, ForeignRecordIsRefused) {
    EXPECT_THAT(run(R"({"do":"dispose","object":"foreign"})"),
                ElementsAre("log 0 DisposeCbasedPlugin: Disposing Plugin", namesAnUnrecognizedPlugin,
                            "result false"));
}

TEST_F(CRecord, RecordOfAnotherMakeIsNotFreed) {
    const host::PluginModule module(host::defaultModulePath());
    PresentationPluginCbasedMethods* own = module.createCbased("c_com.norvane.vantor.presentation");
    ASSERT_NE(own, nullptr);
    auto foreign = std::make_unique<PresentationPluginCbasedMethods>(*own);
    EXPECT_FALSE(module.disposeCbased(foreign.get()));
    EXPECT_TRUE(foreign->IsUIEnabled(foreign->handle)) << "neither the record nor what its handle leads to";
    EXPECT_EQ(foreign->size, 17 * sizeof(void*));
    EXPECT_TRUE(module.disposeCbased(own));
    EXPECT_FALSE(module.disposeCbased(nullptr));
}

TEST(OnlyC, MakesEveryObjectAsARecordAndFitsNames) {
    test::ModuleSession session(host::PluginInterface::C);
    const auto refusal = [&](const std::string& keys) {
        return test::only("log", session.run(R"({"do":"create",)" + keys + "}")).front();
    };
    EXPECT_EQ(refusal(R"("name":"com.norvane.vantor.presentationx","kind":"cpp")"),
              "log 3 CreateCbasedPlugin: Wrong create method for interface "
              "'c_com.norvane.vantor.presentationx'");
    EXPECT_EQ(refusal(R"("name":"")"), "log 3 CreateCbasedPlugin: Wrong create method for interface 'c_'");
    EXPECT_EQ(refusal(R"("name":null)"), "log 3 CreateCbasedPlugin: NULL interface name");
    for (const std::string keys :
         {R"("name":"com.norvane.vantor.presentation","kind":"cpp")",
          R"("name":"com.norvane.vantor.presentation")", R"("name":"c_com.norvane.vantor.presentation")",
          R"("name":"c_com.norvane.vantor.presentation","kind":"c")"}) {
        EXPECT_THAT(session.run(R"({"do":"create",)" + keys + "}"), Contains("created true"));
    }
    EXPECT_THAT(session.run(R"({"do":"dispose","object":null})"),
                ElementsAre("log 0 DisposeCbasedPlugin: Disposing Plugin", namesAnUnrecognizedPlugin,
                            "result false"));
}

TEST_F(CRecord, SeveralLiveSideBySideWithClasses) {
    session.run(ready + R"({"do":"create","object":"q","name":"com.norvane.vantor.presentation"}
{"do":"create","object":"r","name":"c_com.norvane.vantor.presentation","kind":"c"})");
    EXPECT_THAT(results(R"({"do":"stop","object":"q"})"), ElementsAre("result -10"));
    EXPECT_THAT(results(R"({"do":"dispose","object":"r"})"), ElementsAre("result true"));
    EXPECT_THAT(results(R"({"do":"stop"})"), ElementsAre("result 0"));
}

} // namespace
