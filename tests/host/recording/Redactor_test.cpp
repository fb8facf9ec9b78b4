#include "host/recording/Redactor.h"

#include "host/Text.h"

#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

namespace json = boost::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

std::vector<std::string> redacted(std::vector<json::object> lines) {
    host::Redactor redactor;
    for (const json::object& line : lines) {
        redactor.learn(line);
    }
    std::vector<std::string> texts;
    for (json::object& line : lines) {
        redactor.redact(line);
        texts.push_back(json::serialize(line));
    }
    return texts;
}

json::object event(const std::string& value) {
    return {{"do", "event"},
            {"xml", R"(<vtguiEvent id="e"><webbrowser id="w" value=")" + value + R"("/></vtguiEvent>)"}};
}
json::object message(const std::string& text) { return {{"out", "log"}, {"message", text}}; }
json::object delivery(const std::string& text) { return {{"do", "deliver"}, {"json", text}}; }
json::object notice(const std::string& text) { return {{"out", "notice"}, {"xml", text}}; }

TEST(Redactor, LeavesALineWithoutSecretsAsItIs) {
    const json::object line = notice(R"(<label id="l" value="Example" tooltip=""/>)");
    EXPECT_EQ(redacted({line}).front(), json::serialize(line));
}

TEST(Redactor, ValueOfAnEventHasOneNameEverywhereAndBeforeItToo) {
    EXPECT_THAT(redacted({delivery(R"({"context_id":"context-77"})"), event("context-77"),
                          message("value \"context-77\""), event("another-one")}),
                ElementsAre(R"({"do":"deliver","json":"{\"context_id\":\"redacted-1\"}"})",
                            R"({"do":"event","xml":"<vtguiEvent id=\"e\"><webbrowser id=\"w\" )"
                            R"(value=\"redacted-1\"/></vtguiEvent>"})",
                            R"({"out":"log","message":"value \"redacted-1\""})",
                            R"({"do":"event","xml":"<vtguiEvent id=\"e\"><webbrowser id=\"w\" )"
                            R"(value=\"redacted-2\"/></vtguiEvent>"})"));
}

TEST(Redactor, CookiesOfRequestsInAllSpellings) {
    const std::vector<std::string> texts =
        redacted({{{"out", "api"}, {"json", R"({"enrollment_cookie":"a<\"&1234"})"}},
                  {{"out", "api"}, {"json", R"({"authorization_cookie" : "another"})"}},
                  {{"do", "service"}, {"json", R"({"logins":{"cookie":"third-one","password":"wren"}})"}},
                  message("a<\"&1234, another and third-one of wren"),
                  notice(R"(<x a="a&lt;&quot;&amp;1234" b="{&quot;a&lt;\&quot;&amp;1234&quot;}"/>)")});
    EXPECT_THAT(
        texts,
        ElementsAre(R"({"out":"api","json":"{\"enrollment_cookie\":\"redacted-1\"}"})",
                    R"({"out":"api","json":"{\"authorization_cookie\" : \"redacted-2\"}"})",
                    R"({"do":"service","json":"{\"logins\":{\"cookie\":\"redacted-3\",)"
                    R"(\"password\":\"redacted-4\"}}"})",
                    R"({"out":"log","message":"redacted-1, redacted-2 and redacted-3 of wren"})",
                    R"({"out":"notice","xml":"<x a=\"redacted-1\" b=\"{&quot;redacted-1&quot;}\"/>"})"));
}

TEST(Redactor, QueryOfAUrlHasOneNameInDocumentsNoticesAndLogs) {
    EXPECT_THAT(
        redacted(
            {delivery(
                 R"({"start_url":"https://idp.example/go?a=1&b=2","end_url":"https:\/\/idp.example\/go?a=1\u0026b=2"})"),
             notice(R"(<w start_url="https://idp.example/go?a=1&amp;b=2" final_url="x://y#t=3"/>)"),
             notice("<statusnotification>{&quot;u&quot;:&quot;https://idp.example/go?a=1&amp;b=2&quot;}</"
                    "statusnotification>"),
             message("Opening https://idp.example/go?a=1&b=2 now: is it?"),
             delivery(R"({"start_url":"https://idp.example/go","end_url":"https://idp.example/?"})")}),
        ElementsAre(
            R"({"do":"deliver","json":"{\"start_url\":\"https://idp.example/go?redacted-1\",\"end_url\":\"https:\\/\\/idp.example\\/go?redacted-1\"}"})",
            R"({"out":"notice","xml":"<w start_url=\"https://idp.example/go?redacted-1\" final_url=\"x://y#redacted-2\"/>"})",
            R"({"out":"notice","xml":"<statusnotification>{&quot;u&quot;:&quot;https://idp.example/go?redacted-1&quot;}</statusnotification>"})",
            R"({"out":"log","message":"Opening https://idp.example/go?redacted-1 now: is it?"})",
            R"({"do":"deliver","json":"{\"start_url\":\"https://idp.example/go\",\"end_url\":\"https://idp.example/?\"}"})"));
}

TEST(Redactor, LooksIntoBase64) {
    const std::string payload = host::encodeBase64(R"({"id":"context-77","url":"https://a/b?c=d"})");
    const std::vector<std::string> texts =
        redacted({event("context-77"),
                  notice("<w event_dispatch_detail=\"" + payload + "\"/>"),
                  {{"do", "event"}, {"xml_base64", host::encodeBase64("\xFF value=\"bytes-1\"")}},
                  message("bytes-1")});
    EXPECT_THAT(texts[1],
                HasSubstr(host::encodeBase64(R"({"id":"redacted-1","url":"https://a/b?redacted-3"})")));
    EXPECT_THAT(texts[2], HasSubstr(host::encodeBase64("\xFF value=\"redacted-2\"")));
    EXPECT_THAT(texts[3], HasSubstr("\"redacted-2\""));
}

TEST(Redactor, ShortValuesLeaveOtherWordsAlone) {
    EXPECT_THAT(
        redacted({event("1"), event("wren"), delivery(R"({"version":"1","page":"wren/v1","x":"wrens"})"),
                  message("value \"1\" of 12, wren, wrens")}),
        ElementsAre(
            HasSubstr("value=\\\"redacted-1\\\""), HasSubstr("value=\\\"redacted-2\\\""),
            R"({"do":"deliver","json":"{\"version\":\"1\",\"page\":\"redacted-2/v1\",\"x\":\"wrens\"}"})",
            R"({"out":"log","message":"value \"redacted-1\" of 12, redacted-2, wrens"})"));
}

TEST(Redactor, SecretInsideAnotherGoesFirstInWhole) {
    EXPECT_THAT(
        redacted({event("secret"), event("secret-and-more"), message("secret-and-more, secret")}).back(),
        HasSubstr("\"redacted-2, redacted-1\""));
}

TEST(Redactor, BrokenTextsAreNoTrouble) {
    for (const std::string text : {"value=", " value=\"", " value='x", "\"cookie\":", "\"cookie\":\"a\\",
                                   "://", "a://?", "=", "AAAAAAAAAAAAAAAA===", "\"cookie\":\"\\q\""}) {
        redacted({{{"do", "event"}, {"xml", text}, {"json", text}, {"xml_base64", text}}});
    }
    EXPECT_EQ(redacted({event("")}).front(), json::serialize(event("")));
}

} // namespace
