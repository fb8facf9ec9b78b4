#include "host/SessionFile.h"

#include "host/HostError.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using host::InputKind;
using host::parseSession;
using ::testing::ElementsAre;

std::vector<std::string> linesOf(std::string_view content) {
    std::vector<std::string> lines;
    for (const host::SessionInput& input : parseSession(content, "file").inputs) {
        lines.push_back(input.json());
    }
    return lines;
}

host::SessionInput inputOf(const std::string& line) { return parseSession(line, "file").inputs.at(0); }

/// The error for a file, or what is told instead of one.
std::string errorOf(std::string_view content) {
    try {
        parseSession(content, "file");
    } catch (const host::HostError& fault) {
        return fault.what();
    }
    return "no error";
}

TEST(SessionFile, EveryInputReadsBackAsItsOneForm) {
    const char* lines[] = {
        R"({"do":"session","format":1})",
        R"({"do":"session","format":1,"time_zone":"Europe/Berlin"})",
        R"({"do":"interfaces"})",
        R"({"do":"create","name":"a"})",
        R"({"do":"create","name":null,"kind":"cpp"})",
        R"({"do":"create","object":"q","name":"a","kind":"c"})",
        R"({"do":"supports","name":"a","version":3})",
        R"({"do":"supports","name":null,"version":-2147483648,"null_handle":true})",
        R"({"do":"register","arguments":"a","callbacks":"host","translator":true,"handle":7})",
        R"({"do":"register","arguments":null,"callbacks":null,"translator":false,"handle":4294967295})",
        R"({"do":"register","arguments":"","callbacks":"h","translator":true,"handle":0,"null_handle":false})",
        R"({"do":"start"})",
        R"({"do":"start","null_handle":true})",
        R"({"do":"stop"})",
        R"({"do":"stop","reason":0})",
        R"({"do":"stop","object":"q","reason":4294967295,"null_handle":true})",
        R"({"do":"unregister"})",
        R"({"do":"unregister","null_handle":true})",
        R"({"do":"dispose"})",
        R"({"do":"dispose","object":"q"})",
        R"({"do":"dispose","object":null})",
        R"({"do":"get","what":"identity","buffer":true,"size":0})",
        R"({"do":"get","what":"label","buffer":false,"size":4294967295})",
        R"({"do":"get","what":"display_version","buffer":true,"size":12,"null_handle":true})",
        R"({"do":"inert","operation":"Encrypt"})",
        R"({"do":"inert","operation":"Decrypt","output":false})",
        R"({"do":"inert","operation":"GetPendingApprovalData"})",
        R"({"do":"inert","operation":"ApprovalEventNotification"})",
        R"({"do":"inert","operation":"IsUIEnabled","null_handle":true})",
        R"({"do":"inert","operation":"IsMultiUserModeEnabled"})",
        R"({"do":"event","xml":"<vtguiEvent id=\"x\"/>"})",
        R"({"do":"event","xml":"","null_handle":true})",
        R"({"do":"deliver","document":"StatusNotification","json":"{}"})",
        R"({"do":"deliver","document":"EnrollmentStatusNotification","json":""})",
        R"({"do":"deliver","document":"EnrollmentAuthRequest","json":"{}"})",
        R"({"do":"deliver","document":"UnenrollmentStatusNotification","json":"{}"})",
        R"({"do":"deliver","document":"DataplaneNotification","json":"{}"})",
        R"({"do":"backend","operation":"GetQuillApiFactory","result":0})",
        R"({"do":"backend","operation":"CreateApi","result":4294967295,"times":1000000})",
        R"({"do":"backend","operation":"Start","result":6,"times":0})",
        R"({"do":"backend","operation":"InitiateEnrollment","result":6})",
        R"({"do":"backend","operation":"InitiateReEnrollment","result":6})",
        R"({"do":"backend","operation":"EnrollmentAuthReply","result":6})",
        R"({"do":"backend","operation":"CancelEnrollment","result":6})",
        R"({"do":"backend","operation":"InitiateUnenrollment","result":6})",
        R"({"do":"backend","operation":"PerformConfigSync","result":6})",
        R"({"do":"backend","operation":"TriggerPostureReports","result":6})",
        R"({"do":"backend","operation":"DataplaneAuthReply","result":6})",
        R"({"do":"backend","operation":"Stop","result":6})",
        R"({"do":"backend","null_api":true})",
        R"({"do":"backend","factory_expired":false})",
        R"({"do":"backend","reset":true})",
    };
    for (const char* line : lines) {
        EXPECT_THAT(linesOf(line), ElementsAre(line));
    }
}

TEST(SessionFile, KeysAreOrderedAndTheLineMadeCompact) {
    EXPECT_THAT(
        linesOf(R"( { "handle" : 7 , "translator" : true, "callbacks":"h","arguments":"","object":"q", )"
                R"("do":"register" } )"),
        ElementsAre(R"({"do":"register","object":"q","arguments":"","callbacks":"h","translator":true,)"
                    R"("handle":7})"));
}

TEST(SessionFile, KnowsItsValues) {
    const auto input =
        inputOf(R"({"do":"register","arguments":null,"callbacks":"h","translator":true,"handle":7})");
    EXPECT_EQ(input.kind(), InputKind::Register);
    EXPECT_EQ(input.line(), 1u);
    EXPECT_TRUE(input.isNull("arguments"));
    EXPECT_EQ(input.pointer("arguments"), nullptr);
    EXPECT_EQ(input.text("callbacks"), "h");
    EXPECT_TRUE(input.flag("translator"));
    EXPECT_EQ(input.count("handle"), 7u);
    EXPECT_EQ(input.object(), "p");
    EXPECT_FALSE(input.flag("null_handle", false));
    EXPECT_EQ(inputOf(R"({"do":"supports","object":"q","name":"","version":-1})").number("version"), -1);
    EXPECT_EQ(inputOf(R"({"do":"supports","object":"q","name":"","version":-1})").object(), "q");
}

TEST(SessionFile, TheBackendLinesAreToldApart) {
    EXPECT_EQ(inputOf(R"({"do":"backend","operation":"Stop","result":1})").kind(), InputKind::BackendResult);
    EXPECT_EQ(inputOf(R"({"do":"backend","null_api":true})").kind(), InputKind::BackendNullApi);
    EXPECT_EQ(inputOf(R"({"do":"backend","factory_expired":true})").kind(), InputKind::BackendFactoryExpired);
    EXPECT_EQ(inputOf(R"({"do":"backend","reset":true})").kind(), InputKind::BackendReset);
}

TEST(SessionFile, BytesThatAreNoTextComeInBase64) {
    const auto input = inputOf(R"({"do":"event","xml_base64":"//4="})");
    EXPECT_EQ(input.text("xml"), "\xFF\xFE");
    EXPECT_EQ(input.json(), R"({"do":"event","xml_base64":"//4="})");
    EXPECT_EQ(inputOf(R"({"do":"event","xml_base64":"YWJj"})").json(), R"({"do":"event","xml":"abc"})");
    EXPECT_EQ(inputOf(R"({"do":"create","name_base64":"/w=="})").text("name"), "\xFF");
    EXPECT_EQ(inputOf(R"({"do":"supports","name_base64":"/w==","version":1})").text("name"), "\xFF");
    EXPECT_EQ(
        inputOf(
            R"({"do":"register","arguments_base64":"/w==","callbacks":null,"translator":true,"handle":1})")
            .text("arguments"),
        "\xFF");
    EXPECT_EQ(
        inputOf(R"({"do":"deliver","document":"StatusNotification","json_base64":"/w=="})").text("json"),
        "\xFF");
}

TEST(SessionFile, BlankLinesCommentsAndOutputsAreSkipped) {
    const auto session = parseSession("# comment {\n"
                                      "\n"
                                      "  \t\r\n"
                                      "{\"do\":\"session\",\"format\":1,\"time_zone\":\"UTC\"}\n"
                                      "{\"n\":1,\"out\":\"log\",\"message\":\"m\",\"line\":3}\n"
                                      "{\"out\":\"interfaces\",\"optional\":true}\n"
                                      "{\"out\":\"created\"}\n{\"out\":\"result\"}\n{\"out\":\"notice\"}\n"
                                      "{\"out\":\"stop_done\"}\n{\"out\":\"api\"}\n"
                                      "{\"do\":\"start\"}",
                                      "file");
    ASSERT_EQ(session.inputs.size(), 2u);
    EXPECT_EQ(session.inputs[0].line(), 4u);
    EXPECT_EQ(session.inputs[1].line(), 12u);
    EXPECT_EQ(session.timeZone(), "UTC");
}

TEST(SessionFile, OutputsHoldKnownKeysOfTheRightKind) {
    for (const std::string line :
         {R"({"n":1,"out":"interfaces","entries":[{"name":"x","version":3}]})",
          R"({"out":"created","object":true})",
          R"({"out":"result","value":-10,"size":12,"text":null,"first_byte":0})",
          R"({"out":"result","value":true})",
          R"({"out":"notice","callbacks":"h","handle":7,"xml_base64":"AA=="})",
          R"({"out":"stop_done","handle":7})",
          R"({"out":"api","operation":"Stop","json":null,"optional":true})",
          R"({"out":"log","severity":0,"function":"f","file":"f","line":1,"message_base64":"AA=="})"}) {
        EXPECT_EQ(errorOf(line), "no error") << line;
    }
    EXPECT_EQ(errorOf(R"({"out":"result","valeu":0})"), "file:1: unknown key \"valeu\"");
    EXPECT_EQ(errorOf(R"({"out":"result","value":"0"})"),
              "file:1: key \"value\" is of the wrong kind: \"0\"");
    EXPECT_EQ(errorOf(R"({"n":"1","out":"created"})"), "file:1: key \"n\" is of the wrong kind: \"1\"");
    EXPECT_EQ(errorOf(R"({"out":"notice","xml_base64":"%"})"), "file:1: unknown key \"xml_base64\"");
    EXPECT_EQ(errorOf(R"({"out":"log","line_base64":"AA=="})"), "file:1: unknown key \"line_base64\"");
    EXPECT_EQ(errorOf(R"({"out":"interfaces","entries":[1]})"),
              "file:1: key \"entries\" is of the wrong kind: [1]");
}

TEST(SessionFile, SessionComesBeforeOutputsToo) {
    EXPECT_NE(errorOf("{\"out\":\"created\"}\n{\"do\":\"session\",\"format\":1}"), "no error");
    EXPECT_EQ(errorOf("# comment\n\n{\"do\":\"session\",\"format\":1}"), "no error");
}

TEST(SessionFile, EmptyFileIsAnEmptySession) {
    EXPECT_TRUE(parseSession("", "file").inputs.empty());
    EXPECT_EQ(parseSession("", "file").timeZone(), std::nullopt);
    EXPECT_EQ(parseSession(R"({"do":"session","format":1})", "file").timeZone(), std::nullopt);
}

TEST(SessionFile, ErrorsNameTheLine) {
    EXPECT_EQ(errorOf("{\"do\":\"start\"}\n\n# x\n{\"do\":\"stop\",\"reason\":true}\n"),
              "file:4: \"reason\" must be a whole number from 0 to 4294967295");
}

struct BadLine {
    const char* line;
    const char* error;
};

/// A handle has as many bits as a pointer.
constexpr const char* handleFault = sizeof(void*) == 8
                                        ? R"("handle" must be a whole number from 0 to 18446744073709551615)"
                                        : R"("handle" must be a whole number from 0 to 4294967295)";

const BadLine badLines[] = {
    {"{", "not JSON: incomplete JSON"},
    {"nonsense", "not JSON: syntax error"},
    {"{\"do\":\"start\"} x", "not JSON: extra data"},
    {"{\"do\":\"event\",\"xml\":\"\xFF\"}", "not JSON: syntax error"},
    {"[]", "not a JSON object"},
    {"null", "not a JSON object"},
    {"{}", R"(a line holds either "do" or "out")"},
    {R"({"do":"start","out":"log"})", R"(a line holds either "do" or "out")"},
    {R"({"do":"start","do":"start"})", R"(the key "do" comes twice)"},
    {R"({"do":"stop","reason":1,"reason":1})", R"(the key "reason" comes twice)"},
    {R"({"out":"log","n":1,"n":1})", R"(the key "n" comes twice)"},
    {R"({"out":"other"})", R"(unknown "out": "other")"},
    {R"({"out":null})", R"(unknown "out": null)"},
    {R"({"do":"other"})", R"(unknown "do": "other")"},
    {R"({"do":"Start"})", R"(unknown "do": "Start")"},
    {R"({"do":["start"]})", R"(unknown "do": ["start"])"},
    {R"({"do":"session"})", R"("session" needs "format")"},
    {R"({"do":"session","format":2})", R"("format" must be 1)"},
    {R"({"do":"session","format":"1"})", R"("format" must be 1)"},
    {R"({"do":"session","format":1,"time_zone":null})", R"("time_zone" must be a text)"},
    {R"({"do":"interfaces","name":"x"})", R"("interfaces" knows no key "name")"},
    {R"({"do":"create"})", R"("create" needs "name")"},
    {R"({"do":"create","name":1})", R"("name" must be a text or null)"},
    {R"({"do":"create","name":"x","kind":"d"})", R"("kind" must be "cpp" or "c")"},
    {R"({"do":"create","name":"x","null_handle":true})", R"("create" knows no key "null_handle")"},
    {R"({"do":"create","name":"x","object":null})", R"("object" must be a text)"},
    {R"({"do":"supports","version":3})", R"("supports" needs "name")"},
    {R"({"do":"supports","name":"x"})", R"("supports" needs "version")"},
    {R"({"do":"supports","name":"x","version":1.0})", R"("version" must be a whole number of 32 bits)"},
    {R"({"do":"supports","name":"x","version":2147483648})",
     R"("version" must be a whole number of 32 bits)"},
    {R"({"do":"supports","name":"x","version":-2147483649})",
     R"("version" must be a whole number of 32 bits)"},
    {R"({"do":"register","callbacks":"h","translator":true,"handle":7})", R"("register" needs "arguments")"},
    {R"({"do":"register","arguments":"","translator":true,"handle":7})", R"("register" needs "callbacks")"},
    {R"({"do":"register","arguments":"","callbacks":"h","handle":7})", R"("register" needs "translator")"},
    {R"({"do":"register","arguments":"","callbacks":"h","translator":true})", R"("register" needs "handle")"},
    {R"({"do":"register","arguments":0,"callbacks":"h","translator":true,"handle":7})",
     R"("arguments" must be a text or null)"},
    {R"({"do":"register","arguments":"","callbacks":true,"translator":true,"handle":7})",
     R"("callbacks" must be a text or null)"},
    {R"({"do":"register","arguments":"","callbacks":"h","translator":null,"handle":7})",
     R"("translator" must be true or false)"},
    {R"({"do":"register","arguments":"","callbacks":"h","translator":true,"handle":-1})", handleFault},
    {R"({"do":"register","arguments":"","callbacks":"h","translator":true,"handle":18446744073709551616})",
     handleFault},
    {R"({"do":"start","reason":0})", R"("start" knows no key "reason")"},
    {R"({"do":"start","null_handle":1})", R"("null_handle" must be true or false)"},
    {R"({"do":"start","object":7})", R"("object" must be a text)"},
    {R"({"do":"start","object_base64":"cA=="})", R"("start" knows no key "object_base64")"},
    {R"({"do":"stop","reason":4294967296})", R"("reason" must be a whole number from 0 to 4294967295)"},
    {R"({"do":"stop","reason":null})", R"("reason" must be a whole number from 0 to 4294967295)"},
    {R"({"do":"dispose","object":1})", R"("object" must be a text or null)"},
    {R"({"do":"dispose","null_handle":true})", R"("dispose" knows no key "null_handle")"},
    {R"({"do":"get","buffer":true,"size":1})", R"("get" needs "what")"},
    {R"({"do":"get","what":"label","size":1})", R"("get" needs "buffer")"},
    {R"({"do":"get","what":"label","buffer":true})", R"("get" needs "size")"},
    {R"({"do":"get","what":"Label","buffer":true,"size":1})",
     R"("what" must be "identity", "label" or "display_version")"},
    {R"({"do":"inert"})", R"("inert" needs "operation")"},
    {R"({"do":"inert","operation":"Start"})",
     R"("operation" must be "Encrypt", "Decrypt", "GetPendingApprovalData", "ApprovalEventNotification", )"
     R"("IsUIEnabled" or "IsMultiUserModeEnabled")"},
    {R"({"do":"inert","operation":"Decrypt","output":null})", R"("output" must be true or false)"},
    {R"({"do":"event"})", R"("event" needs "xml")"},
    {R"({"do":"event","xml":null})", R"("xml" must be a text)"},
    {R"({"do":"event","xml_base64":"%"})", R"("xml_base64" must be a text in Base64)"},
    {R"({"do":"event","xml_base64":1})", R"("xml_base64" must be a text in Base64)"},
    {R"({"do":"event","xml":"","xml_base64":""})", R"("xml" is given twice)"},
    {R"({"do":"deliver","json":"{}"})", R"("deliver" needs "document")"},
    {R"({"do":"deliver","document":"StatusNotification"})", R"("deliver" needs "json")"},
    {R"({"do":"deliver","document":"Status","json":"{}"})",
     R"("document" must be "StatusNotification", "EnrollmentStatusNotification", "EnrollmentAuthRequest", )"
     R"("UnenrollmentStatusNotification" or "DataplaneNotification")"},
    {R"({"do":"deliver","document":"StatusNotification","json":{}})", R"("json" must be a text)"},
    {R"({"do":"backend"})", R"("backend" needs "operation", "null_api", "factory_expired" or "reset")"},
    {R"({"do":"backend","operation":"Stop"})", R"("backend" needs "result")"},
    {R"({"do":"backend","operation":"Stop","result":-1})",
     R"("result" must be a whole number from 0 to 4294967295)"},
    {R"({"do":"backend","operation":"Stop","result":1,"times":1.5})",
     R"("times" must be a whole number from 0 to 4294967295)"},
    {R"({"do":"backend","null_api":0})", R"("null_api" must be true or false)"},
    {R"({"do":"backend","null_api":true,"reset":true})", R"("backend" knows no key "reset")"},
    {R"({"do":"backend","reset":false})", R"("reset" must be true)"},
};

TEST(SessionFile, BadLinesAreNamedWithTheirFault) {
    for (const BadLine& bad : badLines) {
        EXPECT_EQ(errorOf(bad.line), std::string("file:1: ") + bad.error) << bad.line;
    }
}

TEST(SessionFile, UnknownBackendOperationIsRefused) {
    EXPECT_THAT(
        errorOf(R"({"do":"backend","operation":"Begin","result":1})"),
        ::testing::StartsWith(R"(file:1: "operation" must be "GetQuillApiFactory", "CreateApi", "Start",)"));
}

TEST(SessionFile, SessionMayOnlyComeFirst) {
    EXPECT_EQ(errorOf("{\"do\":\"start\"}\n{\"do\":\"session\",\"format\":1}"),
              "file:2: \"session\" may only be the first line");
    EXPECT_EQ(errorOf("{\"do\":\"session\",\"format\":1}\n{\"do\":\"session\",\"format\":1}"),
              "file:2: \"session\" may only be the first line");
}

TEST(SessionFile, DeepNestingIsRefusedWithoutHarm) {
    EXPECT_EQ(errorOf(std::string(100'000, '[')), "file:1: not JSON: too deep");
}

TEST(SessionFile, MissingFileIsNamed) {
    try {
        host::readSession("/nonexistent/session");
        FAIL();
    } catch (const host::HostError& fault) {
        EXPECT_STREQ(fault.what(), "cannot read /nonexistent/session");
    }
}

} // namespace
