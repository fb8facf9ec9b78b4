#include "host/SessionReport.h"

#include <boost/json/parse.hpp>

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using ::testing::HasSubstr;
namespace json = boost::json;

constexpr const char* content = R"({"do":"start"}
# a note
{"n":1,"out":"result","value":0}
{"n":1,"out":"notice","callbacks":"host","handle":7,"xml":"<a timestamp=\"*\" b=\"Enrolling...\"/>"}
)";

std::vector<json::object> lines(std::initializer_list<const char*> texts) {
    std::vector<json::object> objects;
    for (const char* text : texts) {
        objects.push_back(json::parse(text).as_object());
    }
    return objects;
}

/// The report on a session that went otherwise.
std::string reportFor(const std::vector<json::object>& actual) {
    const host::Session session = host::parseSession(content, "file");
    std::vector<json::object> expected;
    for (const host::SessionExpectation& expectation : session.expectations) {
        expected.push_back(expectation.output);
    }
    const auto difference = host::firstDifference(expected, actual);
    return difference ? host::reportOf(*difference, session, actual) : "no difference";
}

TEST(SessionReport, NamesTheKeyTheLineAndTheInput) {
    EXPECT_EQ(reportFor(lines({R"({"n":1,"out":"result","value":-10})"})),
              "file:3: not met\n"
              "  in input 1, line 1: {\"do\":\"start\"}\n"
              "  \"value\"\n"
              "    expected 0\n"
              "    actual   -10\n");
}

TEST(SessionReport, ShowsTextsFromWhereTheyDiffer) {
    const std::string report = reportFor(lines(
        {R"({"n":1,"out":"result","value":0})",
         R"({"n":1,"out":"notice","callbacks":"host","handle":7,"xml":"<a timestamp=\"9\" b=\"Enrolled\"/>"})"}));
    EXPECT_THAT(report, HasSubstr("file:4: not met\n"));
    EXPECT_THAT(report, HasSubstr("  \"xml\", from byte "));
    EXPECT_THAT(report, HasSubstr("Enrolling..."));
    EXPECT_THAT(report, HasSubstr("Enrolled"));
}

TEST(SessionReport, ShowsTheSurroundingsOfLongTexts) {
    const std::string longText(1000, 'x');
    const host::Session session = host::parseSession(
        R"({"n":1,"out":"api","operation":"A","json":")" + longText + "b" + longText + "\"}", "file");
    const auto actual =
        lines({(R"({"n":1,"out":"api","operation":"A","json":")" + longText + "c\"}").c_str()});
    const std::string report = host::reportOf({0, 0, ""}, session, actual);
    EXPECT_THAT(report, HasSubstr("from byte 1000 on"));
    EXPECT_THAT(report, HasSubstr("..." + std::string(40, 'x') + "bx"));
    EXPECT_THAT(report, HasSubstr("..." + std::string(40, 'x') + "c\n"));
    EXPECT_LT(report.size(), 500u);
}

TEST(SessionReport, TellsWhatComesInTheLinesPlace) {
    EXPECT_EQ(reportFor(lines({R"({"n":1,"out":"api","operation":"Start","json":null})"})),
              "file:3: not met\n"
              "  in input 1, line 1: {\"do\":\"start\"}\n"
              "    expected {\"n\":1,\"out\":\"result\",\"value\":0}\n"
              "    actual   {\"n\":1,\"out\":\"api\",\"operation\":\"Start\",\"json\":null}\n");
}

TEST(SessionReport, TellsThatNothingMoreComes) {
    EXPECT_THAT(reportFor(lines({R"({"n":1,"out":"result","value":0})"})),
                HasSubstr("file:4: not met: nothing more comes\n"));
}

TEST(SessionReport, TellsOfAnOutputTooMany) {
    const host::Session session = host::parseSession("{\"do\":\"start\"}", "file");
    const auto actual = lines({R"({"n":1,"out":"stop_done","callbacks":"host","handle":7})"});
    EXPECT_EQ(host::reportOf({0, 0, ""}, session, actual),
              "file: an output too many\n"
              "  in input 1, line 1: {\"do\":\"start\"}\n"
              "    actual   {\"n\":1,\"out\":\"stop_done\",\"callbacks\":\"host\",\"handle\":7}\n");
}

TEST(SessionReport, MissingKeyIsNamed) {
    EXPECT_THAT(reportFor(lines({R"({"n":1,"out":"result"})"})),
                HasSubstr("  \"value\" is missing; expected 0\n"));
}

TEST(SessionReport, ShowsWhatIsLeftOpenAsExpected) {
    const host::Session session =
        host::parseSession(R"({"n":1,"out":"notice","xml":"<a timestamp=\"*\" b=\"1\"/>"})", "file");
    const auto actual = lines({R"({"n":1,"out":"notice","xml":"<a timestamp=\"11/21/26\" b=\"2\"/>"})"});
    EXPECT_EQ(host::reportOf({0, 0, ""}, session, actual), "file:1: not met\n"
                                                           "  \"xml\", from byte 20 on\n"
                                                           "    expected <a timestamp=\"*\" b=\"1\"/>\n"
                                                           "    actual   <a timestamp=\"*\" b=\"2\"/>\n");
}

TEST(AsExpected, TimeStampsAreOpenWhereTheExpectationSaysSo) {
    EXPECT_EQ(host::asExpected(R"(<a timestamp="*"/><b timestamp="1"/>)",
                               R"(<a timestamp="8"/><b timestamp="9"/>)"),
              R"(<a timestamp="*"/><b timestamp="9"/>)");
    EXPECT_EQ(host::asExpected(R"(<a timestamp="*"/>)", R"(<a timestamp="8)"), R"(<a timestamp="8)");
    EXPECT_EQ(host::asExpected("", R"(<a timestamp="8"/>)"), R"(<a timestamp="8"/>)");
}

TEST(AsExpected, TheSystemOfAUserAgentIsOpenAndNothingElseOfIt) {
    const auto agent = [](const std::string& value) { return "<a user_agent=\"" + value + "\" b=\"\"/>"; };
    const std::string expected = agent("X 1 (linux-x86_64)");
    EXPECT_EQ(host::asExpected(expected, agent("X 1 (win)")), expected);
    EXPECT_EQ(host::asExpected(expected, agent("X 2 (win)")), agent("X 2 (linux-x86_64)"));
    EXPECT_EQ(host::asExpected(expected, agent("X 1 (other)")), agent("X 1 (other)"));
    EXPECT_EQ(host::asExpected(agent("X 1"), agent("X 1 (win)")), agent("X 1 (win)"));
}

TEST(MaskedTimeStamps, OfNoticesAreLeftOpen) {
    auto outputs = lines({R"({"out":"notice","xml":"<a timestamp=\"1\"/><b timestamp=\"\" c=\"2\"/>"})",
                          R"({"out":"log","message":"a timestamp=\"1\""})",
                          R"({"out":"notice","xml":"<a timestamp=\"1"})"});
    host::maskTimeStamps(outputs);
    EXPECT_EQ(outputs[0].at("xml").as_string(), R"(<a timestamp="*"/><b timestamp="*" c="2"/>)");
    EXPECT_EQ(outputs[1].at("message").as_string(), R"(a timestamp="1")");
    EXPECT_EQ(outputs[2].at("xml").as_string(), R"(<a timestamp="1)");
}

} // namespace
