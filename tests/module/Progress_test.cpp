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

class Progress : public testing::Test {
protected:
    void SetUp() override { session.start(); }

    Lines status(const boost::json::value& document) {
        return session.deliver("StatusNotification", textOf(document));
    }
    Lines enrollment(std::string_view progress, std::string_view substatus = "") {
        return session.deliver("EnrollmentStatusNotification",
                               textOf(test::enrollmentStatusDocument(progress, substatus)));
    }
    Lines unenrollment(std::string_view progress, std::string_view substatus = "") {
        return session.deliver("UnenrollmentStatusNotification",
                               textOf(test::unenrollmentStatusDocument(progress, substatus)));
    }
    Lines authRequest() {
        return session.deliver("EnrollmentAuthRequest", textOf(test::enrollmentAuthRequestDocument()));
    }
    Lines cookie() {
        return session.event("<vtguiEvent id=\"quill_enrollment_browser_web_control_OnPress\"><webbrowser "
                             "id=\"quill_enrollment_browser_web_control\" value=\"cookie\"/></vtguiEvent>");
    }
    Lines enroll() {
        status(test::notEnrolledStatusDocument());
        return session.press("quill_tile_enroll_action_btn");
    }
    void enrollUntilProgress() {
        enroll();
        enrollment("started");
        authRequest();
        cookie();
    }
    Lines unenroll() {
        status(test::enrolledStatusDocument());
        return session.press("quill_adv_unenroll_btn");
    }

    /// The screens in front of the rendering that follows the end.
    static Lines beforeRendering(const Lines& shown) {
        return Lines(shown.begin(), std::find(shown.begin(), shown.end(), "stats-overview update"));
    }

    test::ModuleSession session;
};

const std::string enrollingTile = "\"Enrolling...\" \"Enrolling\"";
const std::string closeEnrollmentBrowser = "dispose quill_enrollment_browser_dialog";

// The journey of a good enrollment.

TEST_F(Progress, AGoodEnrollmentFromTheFirstClickToItsEnd) {
    EXPECT_EQ(screens(enroll()),
              (Lines{"apilog eventnotification", "tile update Transition " + enrollingTile + " [Enroll-]"}));
    EXPECT_EQ(screens(enrollment("started")),
              (Lines{"apilog enrollmentstatusnotification",
                     "tile update Transition " + enrollingTile + " [Cancel]"}));
    EXPECT_EQ(screens(authRequest()), (Lines{"apilog enrollmentauthrequest",
                                             "popup quill_enrollment_browser_dialog browse_for_cookie"}));
    EXPECT_EQ(screens(cookie()),
              (Lines{"apilog eventnotification", "tile update Transition " + enrollingTile + " []",
                     "popup quill_enrollment_browser_dialog browse_for_local_content"}));
    EXPECT_EQ(screens(status(test::enrolledStatusDocument())), Lines{"apilog statusnotification"});
    const Lines shown = screens(enrollment("complete", "success"));
    EXPECT_EQ(
        Lines(shown.begin(), shown.end() - 2),
        (Lines{
            "apilog enrollmentstatusnotification",
            "tile update Transition \"Enrollment complete. Please wait...\" \"Enrollment complete\" []",
            "hide-window",
            "toast \"Norvane Kestrel Suite\" \"Congratulations! You have successfully enrolled and now have "
            "access to your secure resources.\"",
            closeEnrollmentBrowser, "stats-overview update", "stats-details update",
            "tile update Good \"Wren Gate is active.\" \"Active\" []"}));
    EXPECT_EQ(shown[shown.size() - 2], "adv-enrollment update enabled");
}

TEST_F(Progress, TheInternalStatusesAreLoggedByName) {
    EXPECT_EQ(withoutTrace(enroll())[1],
              "log 0 PresentationPluginImpl::actionDisplayEnrollmentStatusInternal: "
              "Displaying internal enrollment status: Initiating");
    enrollment("started");
    EXPECT_EQ(
        withoutTrace(session.press("quill_tile_cancel_action_btn"))[1],
        "log 0 PresentationPluginImpl::actionDisplayEnrollmentStatusInternal: Displaying internal enrollment "
        "status: Cancelling");
}

TEST_F(Progress, ACancelledEnrollmentEndsWithoutErrorPopup) {
    enroll();
    enrollment("started");
    EXPECT_EQ(
        screens(session.press("quill_tile_cancel_action_btn")),
        (Lines{"apilog eventnotification", "tile update Transition \"Cancelling enrollment process. Please "
                                           "wait...\" \"Cancelling enrollment\" [Cancel-]"}));
    // No browser has been open, so there is none to close.
    const Lines lines = enrollment("complete", "cancelled");
    EXPECT_EQ(beforeRendering(screens(lines)),
              (Lines{"apilog enrollmentstatusnotification",
                     "tile update Transition \"Enrollment cancelled.\" \"Enrollment cancelled\" []"}));
    EXPECT_EQ(only("log 3", withoutTrace(lines)),
              Lines{"log 3 PresentationPluginImpl::notifyVTGUI: Empty UI notice"});
}

// Every substatus of a completion.

struct Completion {
    std::string substatus;
    std::string name;
    std::string tile;
    std::string title; ///< of the error popup; empty: none
    std::string message;
};

void PrintTo(const Completion& completion, std::ostream* out) { *out << completion.name; }

const std::string errorTile = "tile update Attention \"Enrolling...\" \"Enrollment error\" []";

const std::vector<Completion> failures{
    {"internal_error", "InternalError", errorTile, "Internal Error",
     "An internal error occurred. Contact your IT help desk."},
    {"initialization_error", "InitializationError", errorTile, "Initialization error",
     "Unable to initialize enrollment. Contact your IT help desk."},
    {"user_authentication_error", "UserAuthenticationError", errorTile, "Authentication error",
     "Unable to verify your identity. Contact your IT help desk."},
    {"device_registration_error", "DeviceRegistrationError", errorTile, "Device Registration error",
     "Failed to register your device. Contact your IT help desk."},
    {"posture_registration_error", "PostureRegistrationError", errorTile, "Posture Registration error",
     "Failed to register with Plover Desktop. Contact your IT help desk."},
    {"certificate_enrollment_error", "CertificateEnrollmentError", errorTile,
     "Certificate Registration error",
     "Failed to obtain the enrollment certificate. Contact your IT help desk."},
    {"server_communication_error", "ServerCommunicationError", errorTile, "Server Communication error",
     "Enrollment service is not responding. Contact your IT help desk."},
    {"server_certificate_error", "ServerCertificateError", errorTile, "Server Certificate error",
     "Failed to verify enrollment server certificate. Contact your IT help desk."},
    {"posture_no_hardware_security_error", "PostureNoHardwareSecurityError", errorTile, "TPM Error",
     "Failed to communicate with Trusted Platform Module (TPM) on your device. Contact your IT help desk."},
};

class FailedEnrollment : public Progress, public testing::WithParamInterface<Completion> {};

TEST_P(FailedEnrollment, ShowsItsErrorAndClosesTheBrowser) {
    enrollUntilProgress();
    const Lines lines = enrollment("complete", GetParam().substatus);
    EXPECT_EQ(beforeRendering(screens(lines)),
              (Lines{"apilog enrollmentstatusnotification", GetParam().tile, "popup wren_client_error_dialog",
                     "history " + GetParam().title + " " + GetParam().message, closeEnrollmentBrowser}));
    const Lines logged = only("log 0 PresentationPluginImpl::actionDisplayEnrollmentStatus:", lines);
    EXPECT_EQ(logged,
              Lines{"log 0 PresentationPluginImpl::actionDisplayEnrollmentStatus: Displaying enrollment "
                    "status: Complete (" +
                    GetParam().name + ")"});
    for (const std::string& line : lines) {
        if (line.find("wren_client_error_message_header_label") != std::string::npos) {
            EXPECT_NE(line.find("value=\"" + GetParam().title + "\""), std::string::npos);
            EXPECT_NE(line.find("value=\"" + GetParam().message + "\""), std::string::npos);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Substatuses, FailedEnrollment, testing::ValuesIn(failures),
                         [](const auto& completion) { return completion.param.name; });

TEST_F(Progress, CompletionsThatHaveNoRowAreOnlyLoggedAndEndTheFlowAllTheSame) {
    const std::pair<std::string, std::string> substatuses[] = {
        {"", "None"},
        {"invalid_choice_id", "InvalidChoiceId"},
        {"invalid_enrollment_id", "InvalidEnrollmentId"}};
    for (const auto& [literal, name] : substatuses) {
        enrollUntilProgress();
        const Lines lines = enrollment("complete", literal);
        EXPECT_EQ(
            only("log 3", withoutTrace(lines)),
            Lines{"log 3 PresentationPluginImpl::actionDisplayEnrollmentStatus: Invalid enrollment substatus "
                  "received" +
                  name});
        EXPECT_EQ(beforeRendering(screens(lines)), Lines{"apilog enrollmentstatusnotification"});
        EXPECT_EQ(screens(lines)[1], "stats-overview update");
        // Over: the next enrollment may begin.
        session.run(R"({"do":"stop"}
{"do":"start"})");
    }
}

TEST_F(Progress, AnEnrollmentErrorShowsTheInternalErrorWhateverItsSubstatus) {
    enroll();
    const Lines lines = enrollment("error", "server_certificate_error");
    EXPECT_EQ(beforeRendering(screens(lines)),
              (Lines{"apilog enrollmentstatusnotification", errorTile, "popup wren_client_error_dialog",
                     "history Internal Error An internal error occurred. Contact your IT help desk."}));
    EXPECT_EQ(withoutTrace(lines)[1],
              "log 0 PresentationPluginImpl::actionDisplayEnrollmentStatus: Displaying "
              "enrollment status: Error (ServerCertificateError)");
}

TEST_F(Progress, AnEnrollmentErrorKeepsTheEnrollmentsId) {
    enroll();
    enrollment("started");
    enrollment("error", "internal_error");
    // The id is still there to cancel with, but no region is left to hear of it.
    EXPECT_EQ(withoutTrace(session.press("quill_tile_cancel_action_btn")).at(1),
              "log 2 PresentationPluginImpl::EventNotification: Unexpected state transition");
}

TEST_F(Progress, AForeignAuthRequestOpensNoBrowserButTheMachineGoesOn) {
    enroll();
    enrollment("started");
    const Lines lines =
        session.deliver("EnrollmentAuthRequest",
                        textOf(with(test::enrollmentAuthRequestDocument(), "/enrollment_id", "foreign")));
    EXPECT_EQ(
        only("log 3", withoutTrace(lines)),
        Lines{"log 3 PresentationPluginImpl::actionDisplayEnrollmentAuthRequest: Couldnt match enrollment "
              "authentication request to existing enrollment request"});
    EXPECT_EQ(screens(lines), Lines{"apilog enrollmentauthrequest"});
    EXPECT_NE(std::find(lines.begin(), lines.end(),
                        "log 0 QuillSmlLogger_t::log_state_change: [struct Started_s][transition] class "
                        "EnrollStarted_s -> class EnrollAuthenticating_s"),
              lines.end());
}

TEST_F(Progress, AnAbortBeforeStartedHasNoBrowserToClose) {
    enroll();
    const Lines lines = withoutTrace(status(test::errorStatusDocument()));
    EXPECT_EQ(
        Lines(lines.end() - 3, lines.end()),
        (Lines{"log 0 PresentationPluginImpl::actionDisplayEnrollmentStatusInternal: Displaying internal "
               "enrollment status: Aborted",
               "log 2 BrowserPopupHelper::generateBrowserPopupClose: Can't close uninitialized popup with id "
               "quill_enrollment_browser_dialog",
               "log 3 PresentationPluginImpl::notifyVTGUI: Empty UI notice"}));
}

TEST_F(Progress, AnAbortClosesTheBrowserAndForgetsTheEnrollment) {
    enroll();
    enrollment("started");
    authRequest();
    EXPECT_EQ(screens(status(test::errorStatusDocument())).back(), closeEnrollmentBrowser);
    EXPECT_EQ(withoutTrace(session.press("quill_tile_cancel_action_btn")).at(1),
              "log 2 PresentationPluginImpl::EventNotification: No enrollment is currently in progress.");
}

TEST_F(Progress, AnEnrollmentThatEndsWithoutAnyStatusDrawsNothing) {
    // The alert page may ask for a re-enrollment before the backend has told anything.
    session.press("quill_tile_details_action_btn");
    session.event("<vtguiEvent id=\"quill_alert_browser_web_control_OnBrowseEvent\"><webbrowser "
                  "id=\"quill_alert_browser_web_control\" type=\"re-enroll\" value=\"x\"/></vtguiEvent>");
    const Lines lines = enrollment("error");
    EXPECT_EQ(withoutTrace(lines).back(),
              "log 2 PresentationPluginImpl::actionOnlyUpdateUI: Can't update from empty "
              "Dataplane Notification.");
    EXPECT_EQ(screens(lines).back(),
              "history Internal Error An internal error occurred. Contact your IT help desk.");
}

// Unenrollment.

TEST_F(Progress, AGoodUnenrollmentFromTheFirstClickToItsEnd) {
    const Lines initiated = unenroll();
    EXPECT_EQ(screens(initiated),
              (Lines{"apilog eventnotification",
                     "tile update Transition \"Unenrolling...\" \"Unenrolling\" [Enroll-]",
                     "adv-enrollment update disabled"}));
    EXPECT_EQ(only("log 0 PresentationPluginImpl::actionDisplayUnenrollmentStatusInternal:", initiated),
              Lines{});
    EXPECT_EQ(screens(unenrollment("started")),
              (Lines{"apilog unenrollmentstatusnotification",
                     "tile update Transition \"Unenrolling...\" \"Unenrolling\" [Cancel-]"}));
    status(test::notEnrolledStatusDocument());
    const Lines lines = unenrollment("complete", "success");
    const Lines shown = screens(lines);
    EXPECT_EQ(beforeRendering(shown),
              (Lines{"apilog unenrollmentstatusnotification",
                     "tile update Transition \"Unenrollment complete. Please wait...\" "
                     "\"Unenrollment complete\" [Cancel]"}));
    EXPECT_EQ(shown[4], "tile update Attention \"Registration is required to access secure resources.\" "
                        "\"Registration required\" [Enroll]");
    EXPECT_EQ(
        only("log 0 PresentationPluginImpl::actionDisplayUnenrollmentStatus:", lines),
        Lines{
            "log 0 PresentationPluginImpl::actionDisplayUnenrollmentStatus: Displaying unenrollment status: "
            "Complete (Success)"});
}

TEST_F(Progress, AFailedUnenrollmentShowsItsError) {
    unenroll();
    unenrollment("started");
    EXPECT_EQ(beforeRendering(screens(unenrollment("complete", "internal_error"))),
              (Lines{"apilog unenrollmentstatusnotification",
                     "tile update Attention \"Unenrolling...\" \"Unenrolling\" []",
                     "popup wren_client_error_dialog",
                     "history Unenrollment error An internal error has occurred."}));
}

TEST_F(Progress, UnenrollmentCompletionsWithoutRowAreOnlyLogged) {
    const std::pair<std::string, std::string> substatuses[] = {
        {"", "None"}, {"invalid_enrollment_id", "InvalidEnrollmentId"}};
    for (const auto& [literal, name] : substatuses) {
        unenroll();
        unenrollment("started");
        const Lines lines = unenrollment("complete", literal);
        EXPECT_EQ(only("log 3", withoutTrace(lines)),
                  Lines{"log 3 PresentationPluginImpl::actionDisplayUnenrollmentStatus: Invalid unenrollment "
                        "substatus "
                        "received" +
                        name});
        EXPECT_EQ(screens(lines)[1], "stats-overview update");
    }
}

TEST_F(Progress, AnAbortedUnenrollmentLeavesTheTileToTheErrorStatus) {
    unenroll();
    unenrollment("started");
    const Lines lines = status(test::errorStatusDocument("no_choice"));
    EXPECT_EQ(screens(lines).back(), "adv-sync update disabled \"None\"");
    EXPECT_EQ(only("log 2", withoutTrace(lines)), Lines{});
}

// Dataplane authentication.

TEST_F(Progress, ASecondRequestReplacesTheFirst) {
    status(test::enrolledStatusDocument());
    session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(0, 1)));
    session.press("quill_tile_verify_action_btn");
    session.deliver("DataplaneNotification", textOf(with(test::dataplaneDocument(0, 1),
                                                         "/dataplane_auth_requests/0/context_id", "second")));
    EXPECT_EQ(screens(session.press("quill_tile_verify_action_btn")).back(),
              "popup quill_dataplane_auth_browser_dialog browse_for_cookie");
    EXPECT_EQ(
        only("api", session.event("<vtguiEvent id=\"quill_dataplane_auth_browser_web_control_OnPress\"/>")),
        Lines{R"(api DataplaneAuthReply {"version":"1","context_id":"second","authorization_cookie":""})"});
}

// The alert dialog follows the alerts.

TEST_F(Progress, AnOpenAlertDialogFollowsTheAlertsAndGoesWithTheLast) {
    status(test::enrolledStatusDocument());
    session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(1, 0)));
    session.press("quill_tile_details_action_btn");
    EXPECT_EQ(screens(session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(2, 0)))).back(),
              "popup quill_alert_browser_dialog dispatch_event");
    EXPECT_EQ(screens(session.deliver("DataplaneNotification", textOf(test::dataplaneDocument(0, 0)))).back(),
              "dispose quill_alert_browser_dialog");
}

// Error popups.

class ErrorPopup : public Progress {
protected:
    Lines fail(const std::string& substatus) {
        session.press("quill_tile_enroll_action_btn");
        enrollment("started");
        return enrollment("complete", substatus);
    }
    void SetUp() override {
        Progress::SetUp();
        status(test::notEnrolledStatusDocument());
    }
    static Lines popups(const Lines& lines) {
        Lines kept;
        for (const std::string& line : screens(lines)) {
            if (line.find("wren_client_error_dialog") != std::string::npos) {
                kept.push_back(line);
            }
        }
        return kept;
    }
};

TEST_F(ErrorPopup, TheSameErrorTwiceIsOnePopupAndALine) {
    EXPECT_EQ(popups(fail("internal_error")), Lines{"popup wren_client_error_dialog"});
    const Lines again = fail("internal_error");
    EXPECT_EQ(popups(again), Lines{});
    EXPECT_EQ(
        only("log 2 PresentationPluginImpl::showErrorPopup:", again),
        Lines{"log 2 PresentationPluginImpl::showErrorPopup: Duplicated error popup activation detected. "
              "Bypassing the repetition of error dialog rendering."});
}

TEST_F(ErrorPopup, AnotherErrorReplacesTheOpenOne) {
    fail("internal_error");
    EXPECT_EQ(popups(fail("server_certificate_error")),
              (Lines{"dispose wren_client_error_dialog", "popup wren_client_error_dialog"}));
}

TEST_F(ErrorPopup, BothItsControlsCloseIt) {
    for (const std::string event :
         {"wren_client_error_close_btn_OnPress", "wren_client_error_gen_close_btn_OnClose"}) {
        fail("internal_error");
        const Lines lines = withoutTrace(session.event("<vtguiEvent id=\"" + event + "\"/>"));
        EXPECT_EQ(screens(lines), (Lines{"apilog eventnotification", "dispose wren_client_error_dialog"}));
        EXPECT_EQ(lines.back(), "result 0");
        // Its events are gone with it.
        EXPECT_EQ(session.event("<vtguiEvent id=\"" + event + "\"/>").back(), "result -10");
    }
}

TEST_F(ErrorPopup, AClosedErrorMayAppearAgain) {
    fail("internal_error");
    session.event("<vtguiEvent id=\"wren_client_error_close_btn_OnPress\"/>");
    EXPECT_EQ(popups(fail("internal_error")), Lines{"popup wren_client_error_dialog"});
}

} // namespace
