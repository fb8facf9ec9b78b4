#include "host/serve/Recording.h"

#include "host/HostError.h"
#include "host/SessionFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using host::serve::Journal;
using host::serve::Secrets;
using ::testing::HasSubstr;
using ::testing::Not;

std::string recorded(const Journal& journal, Secrets secrets = Secrets::BlankedOut) {
    return sessionText(journal.after(0, 1'000), secrets);
}

TEST(Recording, IsASessionFile) {
    Journal journal({});
    journal.output({{"out", "log"}, {"message", "before all"}});
    journal.beginInput({{"do", "create"}, {"name", "n"}});
    journal.output({{"out", "created"}, {"object", true}});
    journal.endInput();
    journal.beginInput({{"do", "service"}, {"json", "{}"}});
    journal.endInput();
    journal.beginInput({{"do", "start"}});
    journal.output({{"out", "result"}, {"value", 0}});
    journal.endInput();
    journal.outputOf(5, {{"out", "violation"}, {"rule", "r"}, {"text", "t"}});
    EXPECT_EQ(recorded(journal), R"({"do":"create","name":"n"}
{"n":1,"out":"created","object":true}
# {"do":"service","json":"{}"}
{"do":"start"}
{"n":2,"out":"result","value":0}
)");
    EXPECT_EQ(host::parseSession(recorded(journal), "file").inputs.size(), 2u);
}

TEST(Recording, OutputsStandBehindTheirInput) {
    Journal journal({});
    journal.beginInput({{"do", "start"}});
    journal.endInput();
    journal.beginInput({{"do", "stop"}});
    journal.endInput();
    journal.outputOf(1, {{"out", "result"}, {"value", 1}});
    EXPECT_EQ(recorded(journal),
              "{\"do\":\"start\"}\n{\"n\":1,\"out\":\"result\",\"value\":1}\n{\"do\":\"stop\"}\n");
}

TEST(Recording, SaysWhatIsMissing) {
    Journal journal({2, 1'000'000});
    for (int i = 0; i < 3; ++i) {
        journal.beginInput({{"do", "start"}});
        journal.endInput();
    }
    EXPECT_EQ(recorded(journal),
              "# the first 1 entries are no longer there\n{\"do\":\"start\"}\n{\"do\":\"start\"}\n");
}

TEST(Recording, NamesTheTimeZoneAsAnInput) {
    Journal journal({});
    journal.beginInput({{"do", "start"}});
    journal.output({{"out", "result"}, {"value", 0}});
    journal.endInput();
    EXPECT_EQ(sessionText(journal.after(0, 10), Secrets::BlankedOut, "Europe/Berlin"),
              R"({"do":"session","format":1,"time_zone":"Europe/Berlin"}
{"do":"start"}
{"n":2,"out":"result","value":0}
)");
}

TEST(Recording, LeavesOutWhatIsToldOfTheMachine) {
    Journal journal({});
    journal.beginInput({{"do", "start"}});
    journal.output({{"out", "log"}, {"function", "TesselClientRetriever::get"}, {"message", "m"}});
    journal.output({{"out", "log"}, {"function", "Other::get"}, {"message", "m"}});
    journal.endInput();
    EXPECT_THAT(recorded(journal), Not(HasSubstr("Tessel")));
    EXPECT_THAT(recorded(journal), HasSubstr("Other::get"));
}

TEST(Recording, FileThatCannotBeWrittenIsAnError) {
    EXPECT_THROW(host::serve::RecordingFile("/nonexistent/file", Secrets::Kept), host::HostError);
    Journal journal({});
    journal.beginInput({{"do", "start"}});
    journal.endInput();
    host::serve::RecordingFile full("/dev/full", Secrets::Kept);
    EXPECT_THROW(full.write(journal), host::HostError);
    host::serve::RecordingFile none("", Secrets::Kept);
    none.write(journal);
}

class RecordedSecrets : public ::testing::Test {
protected:
    RecordedSecrets() {
        journal.beginInput(
            {{"do", "event"},
             {"xml", R"(<vtguiEvent id="e"><webbrowser id="w" value="top&lt;&quot;1"/></vtguiEvent>)"}});
        journal.output({{"out", "api"},
                        {"operation", "EnrollmentAuthReply"},
                        {"json", R"({"version":"1","enrollment_id":"e","enrollment_cookie":"top<\"1"})"}});
        journal.output({{"out", "log"}, {"message", "cookie top<\"1 it is"}});
        journal.output({{"out", "api"},
                        {"operation", "DataplaneAuthReply"},
                        {"json", R"({"authorization_cookie":"second"})"}});
        journal.output({{"out", "api"},
                        {"operation", "DataplaneAuthReply"},
                        {"json", R"({"authorization_cookie":""})"}});
        journal.output({{"out", "api"}, {"operation", "Start"}, {"json", nullptr}});
        journal.output({{"out", "api"}, {"operation", "Start"}, {"json", "no json"}});
        journal.endInput();
        journal.beginInput({{"do", "event"}, {"xml", "second"}});
        journal.endInput();
    }

    Journal journal{Journal::Limits{}};
};

TEST_F(RecordedSecrets, AreBlankedOutWhereverTheyShow) {
    EXPECT_EQ(
        recorded(journal),
        R"({"do":"event","xml":"<vtguiEvent id=\"e\"><webbrowser id=\"w\" value=\"redacted-1\"/></vtguiEvent>"})"
        "\n"
        R"({"n":1,"out":"api","operation":"EnrollmentAuthReply","json":"{\"version\":\"1\",)"
        R"(\"enrollment_id\":\"e\",\"enrollment_cookie\":\"redacted-1\"}"})"
        "\n"
        R"({"n":1,"out":"log","message":"cookie redacted-1 it is"})"
        "\n"
        R"({"n":1,"out":"api","operation":"DataplaneAuthReply","json":"{\"authorization_cookie\":\"redacted-2\"}"})"
        "\n"
        R"({"n":1,"out":"api","operation":"DataplaneAuthReply","json":"{\"authorization_cookie\":\"\"}"})"
        "\n"
        R"({"n":1,"out":"api","operation":"Start","json":null})"
        "\n"
        R"({"n":1,"out":"api","operation":"Start","json":"no json"})"
        "\n"
        R"({"do":"event","xml":"redacted-2"})"
        "\n");
}

TEST_F(RecordedSecrets, AreKeptOnDemand) {
    EXPECT_THAT(recorded(journal, Secrets::Kept), HasSubstr("top<\\\"1 it is"));
    EXPECT_THAT(recorded(journal, Secrets::Kept), HasSubstr("authorization_cookie\\\":\\\"second"));
}

} // namespace
