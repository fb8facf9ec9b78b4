#include "tests/module/ModuleSession.h"

#include "tests/support/Documents.h"

#include <gtest/gtest.h>

namespace {

using test::Lines;
using test::only;
using test::screens;
using test::textOf;
using test::with;
using test::withoutTrace;

class EventRouting : public testing::Test {
protected:
    void SetUp() override { session.start(); }

    void status(const boost::json::value& document) {
        session.deliver("StatusNotification", textOf(document));
    }
    void dataplane(std::size_t alerts, std::size_t requests) {
        session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(alerts, requests)));
    }
    void enrollUntilStarted() {
        status(test::notEnrolledStatusDocument());
        session.press("quill_tile_enroll_action_btn");
        session.deliver("EnrollmentStatusNotification", textOf(test::enrollmentStatusDocument("started")));
    }
    void enrollUntilAuthenticating() {
        enrollUntilStarted();
        session.deliver("EnrollmentAuthRequest", textOf(test::enrollmentAuthRequestDocument()));
    }
    void openAlertDialog() {
        status(test::enrolledStatusDocument());
        dataplane(1, 0);
        session.press("quill_tile_details_action_btn");
    }

    /// What a control's event leads to, less the notice to the host's log and the machine's trace.
    Lines press(const std::string& control) { return behindApiLog(session.press(control)); }
    Lines event(const std::string& xml) { return behindApiLog(session.event(xml)); }
    static Lines behindApiLog(const Lines& lines) {
        Lines rest = withoutTrace(lines);
        EXPECT_FALSE(rest.empty());
        if (!rest.empty()) {
            EXPECT_NE(rest.front().find("<eventnotification "), std::string::npos) << rest.front();
            rest.erase(rest.begin());
        }
        return rest;
    }
    static bool raised(const Lines& lines, const std::string& name) {
        return std::find(
                   lines.begin(), lines.end(),
                   "log 0 QuillSmlLogger_t::log_process_event: [struct PresentationPlugin_s][process_event] "
                   "struct " +
                       name) != lines.end();
    }

    test::ModuleSession session;
};

std::string said(int severity, const std::string& message) {
    return "log " + std::to_string(severity) + " PresentationPluginImpl::EventNotification: " + message;
}
const std::string done = "result 0";
const std::string unexpected = said(2, "Unexpected state transition");

std::string browserEvent(const std::string& control, const std::string& event,
                         const std::string& attributes) {
    return "<vtguiEvent id=\"" + control + "_" + event + "\"><webbrowser id=\"" + control + "\" " +
           attributes + "/></vtguiEvent>";
}
const std::string enrollmentBrowser = "quill_enrollment_browser_web_control";
const std::string dataplaneBrowser = "quill_dataplane_auth_browser_web_control";
const std::string alertBrowser = "quill_alert_browser_web_control";

// Validation.

TEST_F(EventRouting, ADocumentThatIsNoEventIsLoggedWhole) {
    for (const std::string xml : {"", "no xml", "<vtguiEvent", "<vtguiEvent/>", "<vtguiEvent id=\"\"/>",
                                  "<vtguievent id=\"x\"/>", "<vtguiNotice id=\"x\"/>"}) {
        EXPECT_EQ(
            session.event(xml),
            (Lines{said(3, "Could not validate an incoming event notification: " + xml), "result -10"}));
    }
}

TEST_F(EventRouting, AnUnknownIdIsToldToTheHostAndRefused) {
    const Lines lines = session.event("<vtguiEvent id=\"nobody\"/>");
    EXPECT_EQ(lines,
              (Lines{"notice <vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"apilog\" "
                     "tag=\"apilog\" timestamp=\"*\">\n\t<eventnotification id=\"nobody\" "
                     "eventstore_id=\"EVENT_INVALID\"/>\n</vtguiNotice>\n",
                     said(3, "Received an unknown event: EVENT_INVALID from id= nobody"), "result -10"}));
}

TEST_F(EventRouting, EveryValidEventIsToldToTheHostFirst) {
    const Lines lines = session.press("quill_tile_enroll_action_btn");
    EXPECT_EQ(
        lines.front(),
        "notice <vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"apilog\" tag=\"apilog\" "
        "timestamp=\"*\">\n\t<eventnotification id=\"quill_tile_enroll_action_btn_OnPress\" "
        "eventstore_id=\"ENROLL_ACTION\"/>\n</vtguiNotice>\n");
}

TEST_F(EventRouting, AControlOfAClosedDialogIsUnknownAndATilesStillResolves) {
    openAlertDialog();
    session.event("<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>");
    EXPECT_EQ(session.event("<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>").back(),
              "result -10");
    EXPECT_EQ(press("quill_tile_enroll_action_btn").back(), done);
}

// Enrolling.

TEST_F(EventRouting, EnrollBeforeAnyStatusIsRefused) {
    EXPECT_EQ(press("quill_tile_enroll_action_btn"),
              (Lines{said(3, "Enrollments list is empty.  Initiation of unenrollment skipped."), done}));
}

TEST_F(EventRouting, EnrollWithoutChoicesIsRefusedInTheWordsOfUnenrollment) {
    status(test::enrolledStatusDocument());
    const Lines lines = session.press("quill_tile_enroll_action_btn");
    EXPECT_EQ(behindApiLog(lines),
              (Lines{said(3, "Enrollments list is empty.  Initiation of unenrollment skipped."), done}));
    EXPECT_FALSE(raised(lines, "InitiateEnrollment_e"));
}

TEST_F(EventRouting, EnrollWithAChoiceWithoutIdIsRefused) {
    status(with(test::notEnrolledStatusDocument(), "/enrollment_choices/0/id", ""));
    EXPECT_EQ(press("quill_tile_enroll_action_btn"), (Lines{said(3, "No Choice ID found."), done}));
}

TEST_F(EventRouting, TileAndToastEnrollAlike) {
    status(test::notEnrolledStatusDocument());
    EXPECT_EQ(
        only("api", press("quill_toast_enroll_action_btn")),
        Lines{
            R"(api InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1","enrollment_context":""})"});
}

TEST_F(EventRouting, ASecondClickOnEnrollIsOnlyAWarning) {
    status(test::notEnrolledStatusDocument());
    press("quill_tile_enroll_action_btn");
    EXPECT_EQ(press("quill_tile_enroll_action_btn"), (Lines{unexpected, done}));
}

TEST_F(EventRouting, CancelWithoutEnrollmentIsRefused) {
    EXPECT_EQ(press("quill_tile_cancel_action_btn"),
              (Lines{said(2, "No enrollment is currently in progress."), done}));
}

TEST_F(EventRouting, ClosingTheEnrollmentBrowserCancels) {
    enrollUntilAuthenticating();
    EXPECT_EQ(only("api", event("<vtguiEvent id=\"quill_enrollment_browser_close_btn_OnClose\"/>")),
              Lines{R"(api CancelEnrollment {"version":"1","enrollment_id":"enrollment-1"})"});
}

TEST_F(EventRouting, TheCookieGoesToTheBackend) {
    enrollUntilAuthenticating();
    EXPECT_EQ(only("api", event(browserEvent(enrollmentBrowser, "OnPress", "value=\"secret\""))),
              Lines{R"(api EnrollmentAuthReply {"version":"1","enrollment_id":"enrollment-1",)"
                    R"("enrollment_cookie":"secret"})"});
}

TEST_F(EventRouting, ACookieThatWasNotReportedIsEmpty) {
    enrollUntilAuthenticating();
    EXPECT_EQ(
        only("api", event("<vtguiEvent id=\"quill_enrollment_browser_web_control_OnPress\"/>")),
        Lines{
            R"(api EnrollmentAuthReply {"version":"1","enrollment_id":"enrollment-1","enrollment_cookie":""})"});
}

TEST_F(EventRouting, TheEnrollmentBrowsersErrorIsReadFromTheDataplaneControl) {
    enrollUntilAuthenticating();
    EXPECT_EQ(event(browserEvent(enrollmentBrowser, "OnError", "error=\"unseen\"")).front(),
              said(1, "Handling enrollment browser error notification"));
}

TEST_F(EventRouting, AnErrorInTheEnrollmentBrowserRepliesWithoutCookie) {
    enrollUntilAuthenticating();
    const Lines lines =
        event("<vtguiEvent id=\"quill_enrollment_browser_web_control_OnError\"><webbrowser "
              "id=\"quill_dataplane_auth_browser_web_control\" error=\"timeout\"/></vtguiEvent>");
    EXPECT_EQ(lines.front(), said(1, "Handling enrollment browser error notification (timeout)"));
    EXPECT_EQ(
        only("api", lines),
        Lines{
            R"(api EnrollmentAuthReply {"version":"1","enrollment_id":"enrollment-1","enrollment_cookie":""})"});
}

TEST_F(EventRouting, BrowserEventsWithoutEnrollmentInProgressRaiseNothing) {
    enrollUntilAuthenticating();
    // A completion of a kind that is only logged leaves the browser open, but no enrollment in progress.
    session.deliver("EnrollmentStatusNotification",
                    textOf(test::enrollmentStatusDocument("complete", "invalid_choice_id")));
    const std::string none = said(2, "No enrollment is currently in progress.");
    const Lines reached = session.event(browserEvent(enrollmentBrowser, "OnPress", "value=\"x\""));
    EXPECT_EQ(behindApiLog(reached), (Lines{none, done}));
    EXPECT_FALSE(raised(reached, "EnrollmentAuthReply_e"));
    EXPECT_EQ(event(browserEvent(enrollmentBrowser, "OnError", "")),
              (Lines{said(1, "Handling enrollment browser error notification"), none, done}));
    EXPECT_EQ(event("<vtguiEvent id=\"quill_enrollment_browser_close_btn_OnClose\"/>"), (Lines{none, done}));
}

// An existing enrollment.

TEST_F(EventRouting, UnenrollNeedsAnEnrollmentWithAnId) {
    status(test::notEnrolledStatusDocument());
    EXPECT_EQ(press("quill_adv_unenroll_btn"),
              (Lines{said(3, "Enrollments list is empty.  Initiation of unenrollment skipped."), done}));
    status(with(test::enrolledStatusDocument(), "/enrollments/0/id", ""));
    EXPECT_EQ(press("quill_adv_unenroll_btn"), (Lines{said(3, "No enrollment ID found."), done}));
}

TEST_F(EventRouting, ConfigSyncNeedsAnEnrollmentWithAnId) {
    EXPECT_EQ(press("quill_config_sync_btn"),
              (Lines{said(2, "Enrollments list is empty. Config sync skipped."), done}));
    status(with(test::enrolledStatusDocument(), "/enrollments/0/id", ""));
    EXPECT_EQ(press("quill_config_sync_btn"), (Lines{said(3, "No enrollment ID found."), done}));
}

// Dataplane authentication.

TEST_F(EventRouting, VerifyNeedsARequest) {
    const std::string handling = said(1, "Handling authentication verify action");
    const std::string none =
        said(3, "No dataplane notification or authentication request is currently available");
    EXPECT_EQ(press("quill_tile_verify_action_btn"), (Lines{handling, none, done}));
    status(test::enrolledStatusDocument());
    dataplane(1, 0);
    EXPECT_EQ(press("quill_tile_verify_action_btn"), (Lines{handling, none, done}));
}

TEST_F(EventRouting, VerifyOpensTheFirstRequest) {
    status(test::enrolledStatusDocument());
    dataplane(0, 2);
    const Lines lines = press("quill_tile_verify_action_btn");
    EXPECT_EQ(screens(lines), Lines{"popup quill_dataplane_auth_browser_dialog browse_for_cookie"});
    EXPECT_EQ(
        only("api", event(browserEvent(dataplaneBrowser, "OnPress", "value=\"c\""))),
        Lines{
            R"(api DataplaneAuthReply {"version":"1","context_id":"context-1","authorization_cookie":"c"})"});
}

TEST_F(EventRouting, TheToastVerifiesLikeTheTile) {
    status(test::enrolledStatusDocument());
    dataplane(0, 1);
    EXPECT_EQ(screens(press("quill_tile_verify_action_toast_btn")),
              Lines{"popup quill_dataplane_auth_browser_dialog browse_for_cookie"});
}

TEST_F(EventRouting, TheDataplaneBrowserReportsItsEnd) {
    status(test::enrolledStatusDocument());
    dataplane(0, 1);
    press("quill_tile_verify_action_btn");
    const Lines lines = event(browserEvent(dataplaneBrowser, "OnPress", "value=\"cookie\""));
    EXPECT_EQ(lines.front(), said(1, "Handling dataplane authentication browser complete notification"));
    EXPECT_EQ(screens(lines), Lines{"dispose quill_dataplane_auth_browser_dialog"});
}

TEST_F(EventRouting, TheDataplaneBrowsersErrorRepliesWithoutCookie) {
    status(test::enrolledStatusDocument());
    dataplane(0, 1);
    press("quill_tile_verify_action_btn");
    const Lines lines = event(browserEvent(dataplaneBrowser, "OnError", "error=\"badservercert\""));
    EXPECT_EQ(lines.front(),
              said(1, "Handling dataplane authentication browser error notification (badservercert)"));
    EXPECT_EQ(
        only("api", lines),
        Lines{
            R"(api DataplaneAuthReply {"version":"1","context_id":"context-1","authorization_cookie":""})"});
}

TEST_F(EventRouting, ClosingTheDataplaneBrowserCancelsWithoutReply) {
    status(test::enrolledStatusDocument());
    dataplane(0, 1);
    press("quill_tile_verify_action_btn");
    EXPECT_EQ(
        withoutTrace(event("<vtguiEvent id=\"quill_dataplane_auth_browser_close_btn_OnClose\"/>")).size(),
        3u);
    // The popup is gone, and with it its events.
    EXPECT_EQ(event("<vtguiEvent id=\"quill_dataplane_auth_browser_close_btn_OnClose\"/>").back(),
              "result -10");
}

TEST_F(EventRouting, DataplaneBrowserEventsWithoutContextRaiseNothing) {
    status(test::enrolledStatusDocument());
    // A request without context id opens the browser, but leaves no authentication in progress.
    session.deliver("DataplaneNotification",
                    textOf(with(test::dataplaneDocument(0, 1), "/dataplane_auth_requests/0/context_id", "")));
    press("quill_tile_verify_action_btn");
    EXPECT_EQ(event(browserEvent(dataplaneBrowser, "OnPress", "value=\"x\"")),
              (Lines{said(1, "Handling dataplane authentication browser complete notification"),
                     said(2, "No dataplane authentication is currently in progress"), done}));
    EXPECT_EQ(event(browserEvent(dataplaneBrowser, "OnError", "")),
              (Lines{said(1, "Handling dataplane authentication browser error notification"),
                     said(2, "No dataplane authentication is currently in progress."), done}));
    // Closing still runs, and finds nothing to dismiss.
    EXPECT_EQ(event("<vtguiEvent id=\"quill_dataplane_auth_browser_close_btn_OnClose\"/>"),
              (Lines{said(1, "Handling dataplane authentication browser close notification"),
                     "log 2 PresentationPluginImpl::actionDismissDataplaneAuth: No in progress dataplane "
                     "authentication request to dismiss",
                     done}));
}

// The alert dialog.

TEST_F(EventRouting, TileAndToastOpenTheDetails) {
    status(test::enrolledStatusDocument());
    dataplane(1, 0);
    const Lines first = press("quill_tile_details_action_toast_btn");
    EXPECT_EQ(screens(first), Lines{"popup quill_alert_browser_dialog browse_for_local_content"});
    EXPECT_EQ(first.back(), done);
    const Lines second = press("quill_tile_details_action_btn");
    EXPECT_EQ(screens(second), Lines{"popup quill_alert_browser_dialog"});
    EXPECT_EQ(second.back(), done);
}

TEST_F(EventRouting, ClosingTheAlertBrowserDismissesTheDialog) {
    openAlertDialog();
    const Lines lines = event("<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>");
    EXPECT_EQ(screens(lines), Lines{"dispose quill_alert_browser_dialog"});
    EXPECT_EQ(lines.back(), done);
    EXPECT_EQ(screens(press("quill_tile_details_action_btn")),
              Lines{"popup quill_alert_browser_dialog browse_for_local_content"});
}

TEST_F(EventRouting, AnErrorOfTheAlertBrowserDismissesTheDialogToo) {
    openAlertDialog();
    const Lines lines = event(browserEvent(alertBrowser, "OnError", "error=\"x\""));
    EXPECT_EQ(lines.front(), said(3, "Unexpected issue displaying alert dialog"));
    EXPECT_EQ(screens(lines), Lines{"dispose quill_alert_browser_dialog"});
    EXPECT_EQ(lines.back(), done);
}

// The page inside the alert dialog.

const std::string handlingPage = said(1, "Handling local browser event notification");

TEST_F(EventRouting, APageEventWithoutTypeIsUnexpected) {
    openAlertDialog();
    EXPECT_EQ(event(browserEvent(alertBrowser, "OnBrowseEvent", "value=\"x\"")),
              (Lines{handlingPage, said(0, "Unexpected browser event received"), done}));
}

TEST_F(EventRouting, APageEventOfAnotherTypeDoesNothing) {
    openAlertDialog();
    EXPECT_EQ(
        event(browserEvent(alertBrowser, "OnBrowseEvent", "type=\"Posture-update\" value=\"v\"")),
        (Lines{handlingPage, said(0, "Local browser event type \"Posture-update\" received with value \"v\""),
               done}));
}

TEST_F(EventRouting, PostureUpdateTriggersTheReportsAlsoWithoutValue) {
    openAlertDialog();
    const Lines lines = event(browserEvent(alertBrowser, "OnBrowseEvent", "type=\"posture-update\""));
    EXPECT_EQ(lines, (Lines{handlingPage, said(0, "Local browser event type \"posture-update\" received"),
                            R"(api TriggerPostureReports {"version":"1"})", done}));
}

TEST_F(EventRouting, ReEnrollNeedsAnId) {
    openAlertDialog();
    EXPECT_EQ(event(browserEvent(alertBrowser, "OnBrowseEvent", "type=\"re-enroll\"")),
              (Lines{handlingPage, said(0, "Local browser event type \"re-enroll\" received"),
                     said(3, "No re-enrollment ID specified"), done}));
}

TEST_F(EventRouting, DataplaneAuthOfThePageFindsTheRequestByItsContext) {
    status(test::enrolledStatusDocument());
    const auto page = [&](const std::string& attributes) {
        return event(browserEvent(alertBrowser, "OnBrowseEvent", "type=\"dataplane-auth\" " + attributes));
    };
    dataplane(1, 0);
    press("quill_tile_details_action_btn");
    const auto behindTheType = [](const Lines& lines) { return Lines(lines.begin() + 2, lines.end()); };
    EXPECT_EQ(
        behindTheType(page("value=\"context-1\"")),
        (Lines{said(3, "No dataplane notification or authentication request is currently available"), done}));
    dataplane(0, 2);
    EXPECT_EQ(behindTheType(page("")),
              (Lines{said(3, "No dataplane authentication context ID specified"), done}));
    EXPECT_EQ(behindTheType(page("value=\"context-3\"")),
              (Lines{said(2, "Dataplane authentication request with specified context ID not found"), done}));
    EXPECT_EQ(screens(page("value=\"context-2\"")),
              Lines{"popup quill_dataplane_auth_browser_dialog browse_for_cookie"});
    EXPECT_EQ(
        only("api", event(browserEvent(dataplaneBrowser, "OnPress", "value=\"c\""))),
        Lines{
            R"(api DataplaneAuthReply {"version":"1","context_id":"context-2","authorization_cookie":"c"})"});
}

} // namespace
