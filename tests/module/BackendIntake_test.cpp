#include "tests/module/ModuleSession.h"

#include "tests/support/Documents.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using test::Lines;
using test::textOf;
using test::withoutTrace;

/// What tells one document from another.
struct Document {
    std::string callback;
    std::string notJson;
    std::string notDecoded;
    std::string element;
    std::string event;
    std::string sound;
};

void PrintTo(const Document& document, std::ostream* out) { *out << document.callback; }

const std::vector<Document> documents{
    {"StatusNotification", "Failed to parse status notification: ",
     "Failed to parse JSON status notification: ", "statusnotification", "StatusNotification_e",
     textOf(test::notEnrolledStatusDocument())},
    {"EnrollmentStatusNotification", "Failed to parse enrollment status notification: ",
     "Failed to parse enrollment status notification: ", "enrollmentstatusnotification",
     "EnrollmentStatusNotification_e", textOf(test::enrollmentStatusDocument())},
    {"EnrollmentAuthRequest", "Failed to parse enrollment auth request: ",
     "Failed to parse enrollment auth request: ", "enrollmentauthrequest", "EnrollmentAuthRequest_e",
     textOf(test::enrollmentAuthRequestDocument())},
    {"UnenrollmentStatusNotification", "Failed to parse unenrollment status notification: ",
     "Failed to parse unenrollment status notification: ", "unenrollmentstatusnotification",
     "UnenrollmentStatusNotification_e", textOf(test::unenrollmentStatusDocument())},
    {"DataplaneNotification", "Failed to parse dataplane notification: ",
     "Failed to parse dataplane notification: ", "dataplanenotification", "DataplaneNotification_e",
     textOf(test::dataplaneDocument(1, 1))},
};

class BackendIntake : public testing::TestWithParam<Document> {
protected:
    void SetUp() override { session.start(); }

    Lines deliver(const std::string& json) { return session.deliver(GetParam().callback, json); }
    std::string failure(const std::string& words, const std::string& reason) {
        return "log 3 PresentationPluginImpl::" + GetParam().callback + ": " + words + reason;
    }

    test::ModuleSession session;
};

TEST_P(BackendIntake, TextThatIsNoJsonIsOneLineAndNothingElse) {
    EXPECT_EQ(deliver("{no json"), Lines{failure(GetParam().notJson, "syntax error")});
    EXPECT_EQ(deliver(""), Lines{failure(GetParam().notJson, "incomplete JSON")});
    EXPECT_EQ(deliver(GetParam().sound + "x"), Lines{failure(GetParam().notJson, "extra data")});
}

TEST_P(BackendIntake, CommentsAndTrailingCommasAreNoJson) {
    EXPECT_EQ(deliver("/* comment */ {}"), Lines{failure(GetParam().notJson, "syntax error")});
    EXPECT_EQ(deliver(R"({"version":"1",})"), Lines{failure(GetParam().notJson, "syntax error")});
}

TEST_P(BackendIntake, NestingIsLimitedToThirtyTwoLevels) {
    const auto nested = [](int depth) {
        return std::string(static_cast<std::size_t>(depth), '[') +
               std::string(static_cast<std::size_t>(depth), ']');
    };
    EXPECT_EQ(deliver(nested(33)), Lines{failure(GetParam().notJson, "too deep")});
    EXPECT_EQ(deliver(nested(32)), Lines{failure(GetParam().notDecoded, "BadParameter")});
}

TEST_P(BackendIntake, JsonOfTheWrongShapeIsOneLineAndNothingElse) {
    for (const std::string json : {"[]", "{}", "1", "null", R"({"version":1})", R"({"version":"1"})"}) {
        EXPECT_EQ(deliver(json), Lines{failure(GetParam().notDecoded, "BadParameter")}) << json;
    }
}

TEST_P(BackendIntake, ASoundDocumentGoesToTheHostsLogAsReceivedAndThenToTheMachine) {
    const std::string spaced = " " + GetParam().sound + "\n";
    const Lines lines = deliver(spaced);
    ASSERT_GE(lines.size(), 2u);
    std::string escaped;
    for (const char character : spaced) {
        escaped += character == '"' ? "&quot;" : std::string(1, character);
    }
    EXPECT_EQ(lines[0],
              "notice <vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"apilog\" "
              "tag=\"apilog\" timestamp=\"*\">\n\t<" +
                  GetParam().element + ">" + escaped + "</" + GetParam().element + ">\n</vtguiNotice>\n");
    EXPECT_EQ(
        lines[1],
        "log 0 QuillSmlLogger_t::log_process_event: [struct PresentationPlugin_s][process_event] struct " +
            GetParam().event);
}

TEST_P(BackendIntake, ALateDocumentIsToldToTheHostAndThenRefused) {
    session.run(R"({"do":"stop"})");
    const Lines lines = deliver(GetParam().sound);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(test::screens({lines[0]}), Lines{"apilog " + GetParam().element});
    EXPECT_EQ(lines[3],
              "log 2 PresentationPluginImpl::" + GetParam().callback + ": Unexpected state transition");
}

TEST_P(BackendIntake, AfterUnregisterTheHostIsGoneAndTheEventRefused) {
    session.run(R"({"do":"stop"}
{"do":"unregister"})");
    EXPECT_EQ(
        withoutTrace(deliver(GetParam().sound)),
        (Lines{"log 3 PresentationPluginImpl::notifyVTGUI: UI callbacks not initialized",
               "log 2 PresentationPluginImpl::" + GetParam().callback + ": Unexpected state transition"}));
}

INSTANTIATE_TEST_SUITE_P(Documents, BackendIntake, testing::ValuesIn(documents),
                         [](const auto& document) { return document.param.callback; });

class IntakeExceptions : public testing::Test {
protected:
    void SetUp() override { session.start(); }
    test::ModuleSession session;
};

TEST_F(IntakeExceptions, ADecodersExceptionIsLoggedBehindTheDecodeWordsAndNothingIsCached) {
    const auto enrolled = test::enrolledStatusDocument();
    const std::pair<boost::json::value, std::string> faults[] = {
        {test::with(enrolled, "/enrollments/0/config_sync_status", boost::json::object()), "out of range"},
        {test::with(enrolled, "/enrollments/0", 1), "not an object"},
        {test::with(enrolled, "/enrollments/0/label", 1), "not a string"},
        {test::with(enrolled, "/enrollments/0/unenroll_allowed", 1), "bool required"},
        {test::with(enrolled, "/enrollments/0/config_sync_status/last_config_sync_success", 1.5),
         "not exact"},
        {test::without(enrolled, "/enrollments/0/network_status/fingerprints"), "BadParameter"},
        {test::with(enrolled, "/enrollments/0/network_status/fingerprints/0/status", "matched"),
         "bad optional access"},
    };
    for (const auto& [document, reason] : faults) {
        EXPECT_EQ(session.deliver("StatusNotification", textOf(document)),
                  Lines{"log 3 PresentationPluginImpl::StatusNotification: Failed to parse JSON status "
                        "notification: " +
                        reason})
            << reason;
    }
    EXPECT_EQ(withoutTrace(session.press("quill_adv_unenroll_btn")).at(1),
              "log 3 PresentationPluginImpl::EventNotification: Enrollments list is empty.  Initiation of "
              "unenrollment skipped.");
}

TEST_F(IntakeExceptions, ADataplaneDecodersExceptionEndsAtTheCallback) {
    const auto document = test::dataplaneDocument(1, 0);
    EXPECT_EQ(session.deliver("DataplaneNotification",
                              textOf(test::with(document, "/dataplane_alerts/0/destinations", 1))),
              Lines{"log 3 PresentationPluginImpl::DataplaneNotification: Failed to parse dataplane "
                    "notification: array "
                    "required"});
}

} // namespace
