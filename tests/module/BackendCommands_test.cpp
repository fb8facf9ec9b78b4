#include "tests/module/ModuleSession.h"

#include "tests/support/Documents.h"

#include <boost/json/serialize.hpp>

#include <gtest/gtest.h>

namespace {

using test::Lines;
using test::only;
using test::textOf;
using test::withoutTrace;

/// How to make the plugin send a request, and what must come of it.
struct Request {
    std::string operation;
    std::vector<std::string> arrange; ///< inputs before
    std::string act;                  ///< the input that sends it
    std::string json;
    std::string slot;
    std::string failure;
};

void PrintTo(const Request& request, std::ostream* out) { *out << request.operation; }

std::string deliver(const std::string& document, const std::string& json) {
    return R"({"do":"deliver","document":")" + document + R"(","json":)" +
           boost::json::serialize(boost::json::string(json)) + "}";
}

std::string event(const std::string& xml) {
    return R"({"do":"event","xml":)" + boost::json::serialize(boost::json::string(xml)) + "}";
}

std::string press(const std::string& control) {
    return event("<vtguiEvent id=\"" + control + "_OnPress\"/>");
}

const std::string notEnrolled = deliver("StatusNotification", textOf(test::notEnrolledStatusDocument()));
const std::string enrolled = deliver("StatusNotification", textOf(test::enrolledStatusDocument()));
const std::string started = deliver("EnrollmentStatusNotification", textOf(test::enrollmentStatusDocument()));
const std::string authRequest =
    deliver("EnrollmentAuthRequest", textOf(test::enrollmentAuthRequestDocument()));
const std::string oneAuthRequest = deliver("DataplaneNotification", textOf(test::dataplaneDocument(0, 1)));
const std::string oneAlert = deliver("DataplaneNotification", textOf(test::dataplaneDocument(1, 0)));
const std::string enroll = press("quill_tile_enroll_action_btn");
const std::string details = press("quill_tile_details_action_btn");

const std::vector<Request> requests{
    {"InitiateEnrollment",
     {notEnrolled},
     enroll,
     R"({"version":"1","enrollment_choice_id":"choice-1","enrollment_context":""})",
     "actionApiInitiateEnrollment",
     "Couldn't initiate enrollment: "},
    {"InitiateReEnrollment",
     {enrolled, oneAlert, details},
     event("<vtguiEvent id=\"quill_alert_browser_web_control_OnBrowseEvent\"><webbrowser "
           "id=\"quill_alert_browser_web_control\" type=\"re-enroll\" value=\"enr\"/></vtguiEvent>"),
     R"({"version":"1","enrollment_id":"enr","enrollment_context":""})",
     "actionApiInitiateReEnrollment",
     "Couldn't initiate re-enrollment: "},
    {"EnrollmentAuthReply",
     {notEnrolled, enroll, started, authRequest},
     event("<vtguiEvent id=\"quill_enrollment_browser_web_control_OnPress\"><webbrowser "
           "id=\"quill_enrollment_browser_web_control\" value=\"a &quot;cookie&quot;\"/></vtguiEvent>"),
     R"({"version":"1","enrollment_id":"enrollment-1","enrollment_cookie":"a \"cookie\""})",
     "actionApiEnrollmentAuthReply",
     "Couldn't submit enrollment auth reply: "},
    {"CancelEnrollment",
     {notEnrolled, enroll, started},
     press("quill_tile_cancel_action_btn"),
     R"({"version":"1","enrollment_id":"enrollment-1"})",
     "actionApiCancelEnrollment",
     "Couldn't cancel enrollment: "},
    {"InitiateUnenrollment",
     {enrolled},
     press("quill_adv_unenroll_btn"),
     R"({"version":"1","enrollment_id":"enrollment-1","enrollment_context":""})",
     "actionApiInitiateUnenrollment",
     "Couldn't initiate unenrollment: "},
    {"PerformConfigSync",
     {enrolled},
     press("quill_config_sync_btn"),
     R"({"version":"1","enrollment_id":"enrollment-1"})",
     "actionApiPerformConfigSync",
     "Couldn't perform config sync: "},
    {"TriggerPostureReports",
     {enrolled, oneAlert, details},
     event("<vtguiEvent id=\"quill_alert_browser_web_control_OnBrowseEvent\"><webbrowser "
           "id=\"quill_alert_browser_web_control\" type=\"posture-update\" value=\"\"/></vtguiEvent>"),
     R"({"version":"1"})",
     "actionApiTriggerPostureReports",
     "Couldn't trigger posture reports: "},
    {"DataplaneAuthReply",
     {enrolled, oneAuthRequest, press("quill_tile_verify_action_btn")},
     event("<vtguiEvent id=\"quill_dataplane_auth_browser_web_control_OnPress\"><webbrowser "
           "id=\"quill_dataplane_auth_browser_web_control\" value=\"cookie\"/></vtguiEvent>"),
     R"({"version":"1","context_id":"context-1","authorization_cookie":"cookie"})",
     "actionApiDataplaneAuthReply",
     "Couldn't submit dataplane auth reply: "},
};

class RequestTest : public testing::TestWithParam<Request> {
protected:
    void arrange() {
        session.start();
        for (const std::string& input : GetParam().arrange) {
            session.run(input);
        }
    }
    void failNext(unsigned result) {
        session.run(R"({"do":"backend","operation":")" + GetParam().operation + R"(","result":)" +
                    std::to_string(result) + "}");
    }

    test::ModuleSession session;
};

TEST_P(RequestTest, ReachesTheBackendAsItsJsonObject) {
    arrange();
    const Lines lines = session.run(GetParam().act);
    EXPECT_EQ(only("api", lines), Lines{"api " + GetParam().operation + " " + GetParam().json});
    EXPECT_EQ(lines.back(), "result 0");
}

TEST_P(RequestTest, AFailureIsLoggedByNameAndStopsThere) {
    arrange();
    failNext(7);
    const Lines lines = withoutTrace(session.run(GetParam().act));
    EXPECT_EQ(only("log 3", lines), Lines{"log 3 PresentationPluginImpl::" + GetParam().slot + ": " +
                                          GetParam().failure + "NotFound"});
    EXPECT_EQ(only("log 2", lines),
              Lines{"log 2 PresentationPluginImpl::EventNotification: Unexpected state transition"});
    EXPECT_EQ(lines.back(), "result 0");
}

TEST_P(RequestTest, AResultWithoutNameLeavesTheLineOpen) {
    arrange();
    failNext(9);
    EXPECT_EQ(only("log 3", withoutTrace(session.run(GetParam().act))),
              Lines{"log 3 PresentationPluginImpl::" + GetParam().slot + ": " + GetParam().failure});
}

INSTANTIATE_TEST_SUITE_P(Requests, RequestTest, testing::ValuesIn(requests),
                         [](const auto& request) { return request.param.operation; });

class StartAndStop : public testing::Test {
protected:
    void create() {
        session.run(R"({"do":"create","name":"com.norvane.vantor.presentation"}
{"do":"register","arguments":"","callbacks":"host","translator":true,"handle":7})");
    }
    Lines start() { return withoutTrace(session.run(R"({"do":"start"})")); }

    const Lines errorScreens{
        "tile update Error \"Kestrel Suite error. Contact your IT help desk.\" \"Kestrel Suite "
        "error\" []",
        "adv-enrollment update disabled", "adv-sync update disabled \"None\""};
    test::ModuleSession session;
};

TEST_F(StartAndStop, AFailedStartIsLoggedAndShownAndMayBeRepeated) {
    create();
    session.run(R"({"do":"backend","operation":"Start","result":8})");
    const Lines lines = start();
    EXPECT_EQ(only("api", lines), (Lines{"api CreateApi", "api Start"}));
    EXPECT_EQ(only("log 3", lines),
              Lines{"log 3 PresentationPluginImpl::actionStartApi: Couldn't start QUILL API: InvalidState"});
    const Lines shown = test::screens(lines);
    EXPECT_EQ(Lines(shown.end() - 3, shown.end()), errorScreens);
    EXPECT_EQ(lines.back(), "result -10");
    EXPECT_EQ(only("api", start()), (Lines{"api CreateApi", "api Start"}));
}

TEST_F(StartAndStop, AFailedCreateIsLoggedAndShown) {
    create();
    session.run(R"({"do":"backend","operation":"CreateApi","result":1})");
    const Lines lines = start();
    EXPECT_EQ(only("api", lines), Lines{"api CreateApi"});
    EXPECT_EQ(only("log 3", lines),
              Lines{"log 3 PresentationPluginImpl::actionStartApi: Couldn't create QUILL API: BadParameter"});
    EXPECT_EQ(test::screens(lines).back(), errorScreens.back());
    EXPECT_EQ(lines.back(), "result -10");
}

TEST_F(StartAndStop, ACreateThatLeavesNothingCountsAsFailedWithTheNameOfSuccess) {
    create();
    session.run(R"({"do":"backend","null_api":true})");
    EXPECT_EQ(only("log 3", start()),
              Lines{"log 3 PresentationPluginImpl::actionStartApi: Couldn't create QUILL API: Success"});
}

TEST_F(StartAndStop, AnExpiredFactoryIsLoggedAndShown) {
    create();
    session.run(R"({"do":"backend","factory_expired":true})");
    const Lines lines = start();
    EXPECT_EQ(only("api", lines), Lines{});
    EXPECT_EQ(only("log 3", lines),
              Lines{"log 3 PresentationPluginImpl::actionStartApi: QUILL API factory not initialized"});
    EXPECT_EQ(lines.back(), "result -10");
}

TEST_F(StartAndStop, ABackendThatFailsToStopIsDroppedAllTheSame) {
    session.start();
    session.run(R"({"do":"backend","operation":"Stop","result":2})");
    EXPECT_EQ(
        withoutTrace(session.run(R"({"do":"stop"})")),
        (Lines{"log 1 PresentationPluginImpl::Stop: Stopping WREN Presentation Plugin Version '5.1.11.2143'",
               "api Stop", "log 3 PresentationPluginImpl::actionStopApi: Couldn't stop QUILL API: Unexpected",
               "stop_done", "result 0"}));
    EXPECT_EQ(only("api", start()), (Lines{"api CreateApi", "api Start"}));
}

TEST_F(StartAndStop, AFailedRequestShowsNothingBeyondWhatWasDrawnBefore) {
    session.start();
    session.run(notEnrolled);
    session.run(R"({"do":"backend","operation":"InitiateEnrollment","result":5})");
    EXPECT_EQ(test::screens(session.run(enroll)),
              (Lines{"apilog eventnotification",
                     "tile update Transition \"Enrolling...\" \"Enrolling\" [Enroll-]"}));
    // The way out: an error status aborts, or a later enrollment status goes on.
    EXPECT_EQ(only("log 2", withoutTrace(session.run(started))), Lines{});
}

} // namespace
