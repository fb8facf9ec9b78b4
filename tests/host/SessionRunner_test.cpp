#include "host/SessionRunner.h"

#include "host/HostError.h"
#include "host/LogTap.h"
#include "tests/host/Paths.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

namespace {

const std::string create = R"({"do":"create","name":"com.norvane.vantor.presentation"})"
                           "\n";
const std::string registerHost =
    R"({"do":"register","arguments":"a","callbacks":"host","translator":true,"handle":7})"
    "\n";
const std::string start = R"({"do":"start"})"
                          "\n";
const std::string ready = create + registerHost + start;

/// Runs sessions against a module that echoes.
class SessionRunner : public ::testing::Test {
protected:
    /// All that was written, log lines left out.
    std::string run(const std::string& session) {
        std::istringstream lines(runWithLog(session));
        std::string kept;
        for (std::string line; std::getline(lines, line);) {
            kept += line.find(R"("out":"log")") == std::string::npos ? line + "\n" : "";
        }
        return kept;
    }
    static std::string runWithLog(const std::string& session,
                                  std::optional<host::PluginInterface> onlyInterface = std::nullopt) {
        std::ostringstream stream;
        host::SessionRecorder recorder(stream);
        const host::LogTap log([&](const host::LogRecord& record) { recorder.log(record); });
        const host::PluginModule module(test::echoModule);
        const host::BackendControls backend;
        host::SessionRunner(module, backend, recorder, onlyInterface)
            .run(host::parseSession(session, "file"));
        return stream.str();
    }
    /// What was written of `session` behind `before`.
    std::string runAfter(const std::string& before, const std::string& session) {
        const std::string prefix = run(before);
        const std::string all = run(before + session);
        EXPECT_EQ(all.substr(0, prefix.size()), prefix);
        return all.substr(prefix.size());
    }
    static std::string errorOf(const std::string& session,
                               std::optional<host::PluginInterface> onlyInterface = std::nullopt) {
        try {
            runWithLog(session, onlyInterface);
        } catch (const host::HostError& fault) {
            return fault.what();
        }
        return "no error";
    }
};

TEST_F(SessionRunner, PrintsEachInputWithItsOutputsInTheOrderInWhichTheyHappen) {
    EXPECT_EQ(runWithLog(R"({"do":"session","format":1})"
                         "\n" +
                         ready +
                         R"({"do":"stop","reason":1})"
                         "\n"
                         R"({"do":"dispose"})"),
              R"({"do":"session","format":1}
{"do":"create","name":"com.norvane.vantor.presentation"}
{"n":2,"out":"log","severity":0,"function":"CreatePlugin","file":"EchoModule","line":12,"message":"com.norvane.vantor.presentation"}
{"n":2,"out":"api","operation":"GetQuillApiFactory","json":null}
{"n":2,"out":"created","object":true}
{"do":"register","arguments":"a","callbacks":"host","translator":true,"handle":7}
{"n":3,"out":"log","severity":1,"function":"EchoPlugin::Register","file":"EchoModule","line":12,"message":"a"}
{"n":3,"out":"result","value":0}
{"do":"start"}
{"n":4,"out":"api","operation":"CreateApi","json":null}
{"n":4,"out":"api","operation":"Start","json":null}
{"n":4,"out":"result","value":0}
{"do":"stop","reason":1}
{"n":5,"out":"api","operation":"Stop","json":null}
{"n":5,"out":"log","severity":0,"function":"EchoPlugin::Stop","file":"EchoModule","line":12,"message":"1"}
{"n":5,"out":"stop_done","callbacks":"host","handle":7}
{"n":5,"out":"result","value":0}
{"do":"dispose"}
{"n":6,"out":"log","severity":0,"function":"DisposePlugin","file":"EchoModule","line":12,"message":"object"}
{"n":6,"out":"log","severity":0,"function":"EchoPlugin::~EchoPlugin","file":"EchoModule","line":12,"message":"gone"}
{"n":6,"out":"result","value":true}
)");
}

TEST_F(SessionRunner, InterfacesNeedNoObject) {
    EXPECT_EQ(run(R"({"do":"interfaces"})"), R"({"do":"interfaces"}
{"n":1,"out":"interfaces","entries":[{"name":"com.norvane.vantor.presentation","version":3},{"name":"echo","version":1}]}
)");
}

TEST_F(SessionRunner, RefusedCreateGivesNoObject) {
    EXPECT_EQ(run(R"({"do":"create","name":"other","kind":"cpp"})"
                  "\n"
                  R"({"do":"create","name":null})"),
              R"({"do":"create","name":"other","kind":"cpp"}
{"n":1,"out":"created","object":false}
{"do":"create","name":null}
{"n":2,"out":"created","object":false}
)");
}

TEST_F(SessionRunner, RefusedCreateLeavesTheObjectOfThatName) {
    EXPECT_EQ(runAfter(create, R"({"do":"create","name":"other"})"
                               "\n"
                               R"({"do":"supports","name":"com.norvane.vantor.presentation","version":3})"),
              R"({"do":"create","name":"other"}
{"n":2,"out":"created","object":false}
{"do":"supports","name":"com.norvane.vantor.presentation","version":3}
{"n":3,"out":"result","value":true}
)");
}

TEST_F(SessionRunner, LaterCreateTakesOverTheName) {
    EXPECT_EQ(runAfter(ready, create + R"({"do":"stop"})"),
              R"({"do":"create","name":"com.norvane.vantor.presentation"}
{"n":4,"out":"api","operation":"GetQuillApiFactory","json":null}
{"n":4,"out":"created","object":true}
{"do":"stop"}
{"n":5,"out":"result","value":-10}
)");
}

TEST_F(SessionRunner, SupportsAndNullArgumentsArePassedOn) {
    EXPECT_EQ(runAfter(create,
                       R"({"do":"supports","name":null,"version":3})"
                       "\n"
                       R"({"do":"supports","name":"com.norvane.vantor.presentation","version":-3})"
                       "\n"
                       R"({"do":"register","arguments":null,"callbacks":"h","translator":true,"handle":1})"
                       "\n"
                       R"({"do":"register","arguments":"","callbacks":null,"translator":true,"handle":1})"
                       "\n"
                       R"({"do":"register","arguments":"","callbacks":"h","translator":false,"handle":1})"),
              R"({"do":"supports","name":null,"version":3}
{"n":2,"out":"result","value":false}
{"do":"supports","name":"com.norvane.vantor.presentation","version":-3}
{"n":3,"out":"result","value":false}
{"do":"register","arguments":null,"callbacks":"h","translator":true,"handle":1}
{"n":4,"out":"result","value":-4}
{"do":"register","arguments":"","callbacks":null,"translator":true,"handle":1}
{"n":5,"out":"result","value":-4}
{"do":"register","arguments":"","callbacks":"h","translator":false,"handle":1}
{"n":6,"out":"result","value":-4}
)");
}

TEST_F(SessionRunner, GettersTellSizeAndText) {
    EXPECT_EQ(runAfter(create, R"({"do":"get","what":"label","buffer":true,"size":5})"
                               "\n"
                               R"({"do":"get","what":"label","buffer":true,"size":4})"
                               "\n"
                               R"({"do":"get","what":"identity","buffer":false,"size":100})"
                               "\n"
                               R"({"do":"get","what":"display_version","buffer":true,"size":4294967295})"
                               "\n"
                               R"({"do":"get","what":"label","buffer":true,"size":0})"),
              R"({"do":"get","what":"label","buffer":true,"size":5}
{"n":2,"out":"result","value":0,"size":5,"text":"Echo"}
{"do":"get","what":"label","buffer":true,"size":4}
{"n":3,"out":"result","value":-3,"size":5,"text":null}
{"do":"get","what":"identity","buffer":false,"size":100}
{"n":4,"out":"result","value":-3,"size":14,"text":null}
{"do":"get","what":"display_version","buffer":true,"size":4294967295}
{"n":5,"out":"result","value":0,"size":4294967295,"text":"1.2"}
{"do":"get","what":"label","buffer":true,"size":0}
{"n":6,"out":"result","value":-3,"size":5,"text":null}
)");
}

TEST_F(SessionRunner, InertOperationsTellTheirResults) {
    EXPECT_EQ(runAfter(create, R"({"do":"inert","operation":"Encrypt"})"
                               "\n"
                               R"({"do":"inert","operation":"Decrypt"})"
                               "\n"
                               R"({"do":"inert","operation":"Decrypt","output":false})"
                               "\n"
                               R"({"do":"inert","operation":"GetPendingApprovalData"})"
                               "\n"
                               R"({"do":"inert","operation":"ApprovalEventNotification"})"
                               "\n"
                               R"({"do":"inert","operation":"IsUIEnabled"})"
                               "\n"
                               R"({"do":"inert","operation":"IsMultiUserModeEnabled"})"),
              R"({"do":"inert","operation":"Encrypt"}
{"n":2,"out":"result","value":-1}
{"do":"inert","operation":"Decrypt"}
{"n":3,"out":"result","value":-2,"size":0,"first_byte":0}
{"do":"inert","operation":"Decrypt","output":false}
{"n":4,"out":"result","value":-2,"size":0,"first_byte":null}
{"do":"inert","operation":"GetPendingApprovalData"}
{"n":5,"out":"result","value":-2}
{"do":"inert","operation":"ApprovalEventNotification"}
{"n":6,"out":"result","value":-2}
{"do":"inert","operation":"IsUIEnabled"}
{"n":7,"out":"result","value":true}
{"do":"inert","operation":"IsMultiUserModeEnabled"}
{"n":8,"out":"result","value":false}
)");
}

TEST_F(SessionRunner, DeliverWaitsForTheCallback) {
    EXPECT_EQ(runAfter(ready, R"({"do":"deliver","document":"StatusNotification","json":"1"})"
                              "\n"
                              R"({"do":"deliver","document":"EnrollmentStatusNotification","json":"2"})"
                              "\n"
                              R"({"do":"deliver","document":"EnrollmentAuthRequest","json":"3"})"
                              "\n"
                              R"({"do":"deliver","document":"UnenrollmentStatusNotification","json":"4"})"
                              "\n"
                              R"({"do":"deliver","document":"DataplaneNotification","json_base64":"/w=="})"),
              R"({"do":"deliver","document":"StatusNotification","json":"1"}
{"n":4,"out":"notice","callbacks":"host","handle":7,"xml":"status 1"}
{"do":"deliver","document":"EnrollmentStatusNotification","json":"2"}
{"n":5,"out":"notice","callbacks":"host","handle":7,"xml":"enrollment status 2"}
{"do":"deliver","document":"EnrollmentAuthRequest","json":"3"}
{"n":6,"out":"notice","callbacks":"host","handle":7,"xml":"auth request 3"}
{"do":"deliver","document":"UnenrollmentStatusNotification","json":"4"}
{"n":7,"out":"notice","callbacks":"host","handle":7,"xml":"unenrollment status 4"}
{"do":"deliver","document":"DataplaneNotification","json_base64":"/w=="}
{"n":8,"out":"notice","callbacks":"host","handle":7,"xml_base64":"ZGF0YXBsYW5lIP8="}
)");
}

TEST_F(SessionRunner, DocumentMayComeLateOrFindNobody) {
    const std::string deliver = R"({"do":"deliver","document":"StatusNotification","json":"x"})";
    EXPECT_EQ(runAfter(create + registerHost, deliver), deliver + "\n") << "before any start";
    EXPECT_EQ(runAfter(ready + "{\"do\":\"stop\"}\n", deliver),
              deliver +
                  "\n{\"n\":5,\"out\":\"notice\",\"callbacks\":\"host\",\"handle\":7,\"xml\":\"status x\"}\n")
        << "after the stop";
    EXPECT_EQ(runAfter(ready + "{\"do\":\"dispose\"}\n", deliver), deliver + "\n") << "after the end";
    EXPECT_EQ(
        runAfter(create + registerHost + R"({"do":"backend","operation":"Start","result":6})" + "\n" + start,
                 deliver),
        deliver + "\n")
        << "after a start that failed";
    EXPECT_EQ(runAfter(ready + "{\"do\":\"stop\"}\n" + R"({"do":"backend","operation":"Start","result":6})" +
                           "\n" + start,
                       deliver),
              deliver +
                  "\n{\"n\":7,\"out\":\"notice\",\"callbacks\":\"host\",\"handle\":7,\"xml\":\"status x\"}\n")
        << "late, after a second start that failed";
}

TEST_F(SessionRunner, EachObjectHasItsOwnConnectionAndCallbacks) {
    EXPECT_EQ(runAfter(ready, R"({"do":"create","object":"q","name":"com.norvane.vantor.presentation"}
{"do":"register","object":"q","arguments":"","callbacks":"other","translator":true,"handle":8}
{"do":"start","object":"q"}
{"do":"deliver","document":"StatusNotification","json":"for p"}
{"do":"deliver","object":"q","document":"StatusNotification","json":"for q"}
)"),
              R"({"do":"create","object":"q","name":"com.norvane.vantor.presentation"}
{"n":4,"out":"api","operation":"GetQuillApiFactory","json":null}
{"n":4,"out":"created","object":true}
{"do":"register","object":"q","arguments":"","callbacks":"other","translator":true,"handle":8}
{"n":5,"out":"result","value":0}
{"do":"start","object":"q"}
{"n":6,"out":"api","operation":"CreateApi","json":null}
{"n":6,"out":"api","operation":"Start","json":null}
{"n":6,"out":"result","value":0}
{"do":"deliver","document":"StatusNotification","json":"for p"}
{"n":7,"out":"notice","callbacks":"host","handle":7,"xml":"status for p"}
{"do":"deliver","object":"q","document":"StatusNotification","json":"for q"}
{"n":8,"out":"notice","callbacks":"other","handle":8,"xml":"status for q"}
)");
}

TEST_F(SessionRunner, EventsReachThePlugin) {
    EXPECT_EQ(runAfter(ready, R"({"do":"event","xml":"notice <a/>"})"
                              "\n"
                              R"({"do":"event","xml":"thread from another thread"})"
                              "\n"
                              R"({"do":"event","xml":"other"})"
                              "\n"
                              R"({"do":"event","xml":"request {\"version\":\"1\"}"})"),
              R"({"do":"event","xml":"notice <a/>"}
{"n":4,"out":"notice","callbacks":"host","handle":7,"xml":"<a/>"}
{"n":4,"out":"result","value":0}
{"do":"event","xml":"thread from another thread"}
{"n":5,"out":"notice","callbacks":"host","handle":7,"xml":"from another thread"}
{"n":5,"out":"result","value":0}
{"do":"event","xml":"other"}
{"n":6,"out":"result","value":-10}
{"do":"event","xml":"request {\"version\":\"1\"}"}
{"n":7,"out":"api","operation":"TriggerPostureReports","json":"{\"version\":\"1\"}"}
{"n":7,"out":"result","value":0}
)");
}

TEST_F(SessionRunner, LogRecordsAreTakenApart) {
    const std::string all = runWithLog(create + R"({"do":"event","xml":"log a\nb() c"})");
    EXPECT_NE(all.find(R"x({"n":2,"out":"log","severity":2,"function":"EchoPlugin::operator ()",)x"
                       R"x("file":"EchoModule","line":12,"message":"a\nb() c"})x"),
              std::string::npos)
        << all;
}

TEST_F(SessionRunner, BackendDoesWhatItIsTold) {
    const std::string request = R"({"do":"event","xml":"request {\"version\":\"1\"}"})"
                                "\n";
    const std::string written = runAfter(
        ready, R"({"do":"backend","operation":"TriggerPostureReports","result":12,"times":2})"
               "\n" +
                   request + request + request +
                   R"({"do":"backend","operation":"TriggerPostureReports","result":4000000000})"
                   "\n" +
                   request + request +
                   R"({"do":"backend","operation":"TriggerPostureReports","result":5,"times":1000000})"
                   "\n" +
                   R"({"do":"backend","reset":true})"
                   "\n" +
                   request);
    std::string values;
    for (std::size_t at = 0; (at = written.find("\"value\":", at)) != std::string::npos; ++at) {
        values += written.substr(at + 8, written.find('}', at) - at - 8) + " ";
    }
    EXPECT_EQ(values, "12 12 0 -294967296 0 0 ");
}

TEST_F(SessionRunner, BackendsFactoryMayBeGoneAndItsApiNull) {
    const std::string failed = "{\"do\":\"start\"}\n{\"n\":4,\"out\":\"result\",\"value\":-10}\n";
    EXPECT_EQ(runAfter(create + registerHost + "{\"do\":\"backend\",\"factory_expired\":true}\n", start),
              failed);
    EXPECT_EQ(runAfter(create + registerHost + "{\"do\":\"backend\",\"null_api\":true}\n", start),
              "{\"do\":\"start\"}\n{\"n\":4,\"out\":\"api\",\"operation\":\"CreateApi\",\"json\":null}\n"
              "{\"n\":4,\"out\":\"result\",\"value\":-10}\n");
    EXPECT_EQ(run("{\"do\":\"backend\",\"operation\":\"GetQuillApiFactory\",\"result\":9}\n" + create),
              R"({"do":"backend","operation":"GetQuillApiFactory","result":9}
{"do":"create","name":"com.norvane.vantor.presentation"}
{"n":2,"out":"api","operation":"GetQuillApiFactory","json":null}
{"n":2,"out":"created","object":false}
)");
}

TEST_F(SessionRunner, WhatOneSessionToldTheBackendIsGoneInTheNext) {
    run("{\"do\":\"backend\",\"null_api\":true}\n");
    EXPECT_NE(run(ready).find("\"n\":3,\"out\":\"result\",\"value\":0"), std::string::npos);
}

TEST_F(SessionRunner, NullIsDisposedOf) {
    EXPECT_EQ(run(R"({"do":"dispose","object":null})"),
              "{\"do\":\"dispose\",\"object\":null}\n{\"n\":1,\"out\":\"result\",\"value\":true}\n");
    EXPECT_EQ(runAfter("{\"do\":\"create\",\"name\":\"other\"}\n", R"({"do":"dispose"})"),
              "{\"do\":\"dispose\"}\n{\"n\":2,\"out\":\"result\",\"value\":true}\n")
        << "what a failed create gave";
}

TEST_F(SessionRunner, WhatIsLeftIsDisposedOfInSilence) {
    const std::string all = runWithLog(ready);
    EXPECT_TRUE(all.ends_with("{\"n\":3,\"out\":\"result\",\"value\":0}\n")) << all;
}

TEST_F(SessionRunner, ObjectThatIsNotThereIsAnErrorThatNamesTheLine) {
    const std::string calls[] = {
        R"({"do":"supports","name":"","version":3})",
        R"({"do":"register","arguments":"","callbacks":"h","translator":true,"handle":1})",
        R"({"do":"start"})",
        R"({"do":"stop"})",
        R"({"do":"unregister"})",
        R"({"do":"get","what":"label","buffer":true,"size":5})",
        R"({"do":"inert","operation":"Encrypt"})",
        R"({"do":"event","xml":""})",
    };
    for (const std::string& call : calls) {
        EXPECT_EQ(errorOf("\n" + call), "file:2: object \"p\" was never created") << call;
        EXPECT_EQ(errorOf("{\"do\":\"create\",\"name\":\"other\"}\n" + call),
                  "file:2: object \"p\" could not be created")
            << call;
        EXPECT_EQ(errorOf(create + "{\"do\":\"dispose\"}\n" + call),
                  "file:3: object \"p\" has been disposed of")
            << call;
    }
    EXPECT_EQ(errorOf(create + R"({"do":"start","object":"q"})"), "file:2: object \"q\" was never created");
    EXPECT_EQ(errorOf(R"({"do":"deliver","document":"StatusNotification","json":"x"})"),
              "file:1: object \"p\" was never created");
}

TEST_F(SessionRunner, SecondDisposeOfAnObjectIsAnError) {
    EXPECT_EQ(errorOf(create + "{\"do\":\"dispose\"}\n{\"do\":\"dispose\"}\n"),
              "file:3: object \"p\" has been disposed of already");
}

TEST_F(SessionRunner, CRecordNeedsAModuleThatOffersIt) {
    EXPECT_EQ(errorOf(R"({"do":"create","name":"c_com.norvane.vantor.presentation","kind":"c"})"),
              "file:1: the module exports no CreateCbasedPlugin");
    EXPECT_EQ(
        errorOf(R"({"do":"dispose","object":"foreign"})"),
        "file:1: object \"foreign\" was never created, and the module exports no DisposeCbasedPlugin that "
        "could be given a foreign record");
    EXPECT_EQ(errorOf(create + R"({"do":"start","null_handle":true})"),
              "file:2: \"null_handle\" is for objects of kind \"c\"");
}

TEST_F(SessionRunner, OnlyInterfaceOverrulesKindsAndFitsNames) {
    const std::pair<std::string, std::string> rows[] = {
        {R"("name":"c_com.norvane.vantor.presentation","kind":"c")", "com.norvane.vantor.presentation"},
        {R"("name":"com.norvane.vantor.presentation","kind":"cpp")", "com.norvane.vantor.presentation"},
        {R"("name":"com.norvane.vantor.presentation")", "com.norvane.vantor.presentation"},
        {R"("name":"c_other","kind":"c")", "other"},
        {R"("name":"")", ""},
        {R"("name":null,"kind":"c")", "(null)"},
    };
    for (const auto& [keys, passed] : rows) {
        const std::string line = R"({"do":"create",)" + keys + "}";
        const std::string all = runWithLog(line, host::PluginInterface::Cpp);
        EXPECT_NE(
            all.find("\"function\":\"CreatePlugin\",\"file\":\"EchoModule\",\"line\":12,\"message\":\"" +
                     passed + "\"}"),
            std::string::npos)
            << all;
        EXPECT_EQ(all.substr(0, all.find('\n')), line) << "the line is printed as it came";
    }
}

TEST_F(SessionRunner, OnlyInterfaceMayBeOneThatTheModuleLacks) {
    EXPECT_EQ(errorOf(create, host::PluginInterface::C), "file:1: the module exports no CreateCbasedPlugin");
    EXPECT_EQ(errorOf(R"({"do":"dispose","object":null})", host::PluginInterface::C),
              "file:1: the module exports no DisposeCbasedPlugin");
}

TEST_F(SessionRunner, InputThatCannotBeRunIsNotPrinted) {
    std::ostringstream stream;
    host::SessionRecorder recorder(stream);
    const host::PluginModule module(test::echoModule);
    const host::BackendControls backend;
    EXPECT_THROW(host::SessionRunner(module, backend, recorder)
                     .run(host::parseSession("{\"do\":\"interfaces\"}\n{\"do\":\"start\"}\n", "file")),
                 host::HostError);
    EXPECT_EQ(stream.str().find("start"), std::string::npos);
    EXPECT_EQ(stream.str().find("{\"do\":\"interfaces\"}"), 0u);
}

} // namespace
