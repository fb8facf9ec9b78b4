// An enrollment, from the click to each of its ends.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <array>

namespace host::validate {
namespace {

constexpr std::string_view closeBrowser = "dispose quill_enrollment_browser_dialog";
constexpr std::string_view finalTile =
    "tile update Attention \"Registration is required to access secure resources.\" \"Registration "
    "required\" [Enroll]";

/// How far an enrollment has come.
enum class Stage { Requested, Started, LoggingIn, Registering };

void enrollUntil(Trial& trial, Stage stage) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    if (stage >= Stage::Started) {
        trial.enrollment("started");
    }
    if (stage >= Stage::LoggingIn) {
        trial.login();
    }
    if (stage >= Stage::Registering) {
        trial.press(loginControl);
    }
}

void begins(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    const Step step = trial.press("quill_tile_enroll_action_btn");
    expectEqual("the result", step.result, 0);
    expectEqual("notices", step.shown(), {"tile update Transition \"Enrolling...\" \"Enrolling\" [Enroll-]"});
    expectEqual("requests", step.requests(),
                {R"(InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1",)"
                 R"("enrollment_context":""})"});
}

void beginsOnce(Trial& trial) {
    enrollUntil(trial, Stage::Requested);
    const Step again = trial.press("quill_tile_enroll_action_btn");
    expectEqual("the result of a second press", again.result, 0);
    expectEqual("requests of a second press", again.requests(), {});
}

void mayBeCancelledOnceStarted(Trial& trial) {
    enrollUntil(trial, Stage::Requested);
    expectEqual("notices of the start", trial.enrollment("started").shown(),
                {"tile update Transition \"Enrolling...\" \"Enrolling\" [Cancel]"});
}

void opensTheBrowser(Trial& trial) {
    enrollUntil(trial, Stage::Started);
    expectEqual("notices of the login", trial.login().shown(),
                {"popup quill_enrollment_browser_dialog browse_for_cookie"});
}

void opensNoForeignLogin(Trial& trial) {
    enrollUntil(trial, Stage::Started);
    const std::string foreign =
        R"({"version":"1","enrollment_id":"foreign","start_url":"s","end_url":"e","cookie_name":"c"})";
    expectEqual("notices of a foreign login", trial.deliver(wrensim_enrollment_auth_request, foreign).shown(),
                {});
    expectEqual("notices of a login behind it", trial.login().shown(), {});
}

void sendsTheCookie(Trial& trial) {
    enrollUntil(trial, Stage::LoggingIn);
    const Step step = trial.press(loginControl);
    expectEqual("requests", step.requests(),
                {R"(EnrollmentAuthReply {"version":"1","enrollment_id":"enrollment-1",)"
                 R"("enrollment_cookie":""})"});
    expectEqual("notices", step.shown(),
                {"tile update Transition \"Enrolling...\" \"Enrolling\" []",
                 "popup quill_enrollment_browser_dialog browse_for_local_content"});
}

void repliesToABrowsersError(Trial& trial) {
    enrollUntil(trial, Stage::LoggingIn);
    expectEqual("requests",
                trial
                    .event(joined({"<vtguiEvent id=\"", loginControl, "_OnError\"><webbrowser id=\"",
                                   loginControl, "\" value=\"x\" error=\"timeout\"/></vtguiEvent>"}))
                    .requests(),
                {R"(EnrollmentAuthReply {"version":"1","enrollment_id":"enrollment-1",)"
                 R"("enrollment_cookie":""})"});
}

void keepsStatusesForTheEnd(Trial& trial) {
    enrollUntil(trial, Stage::Registering);
    expectEqual("notices of a status", trial.status(enrolledDocument()).shown(), {});
    expectEqual("notices of a dataplane document", trial.dataplane(dataplaneDocument(1, 0)).shown(), {});
    expectEqual("the tile at the end", lineAt(trial.enrollment("complete", "success").changed(), 4),
                "tile update Attention \"Tile 1\" \"Access blocked\" [Details]");
}

void succeeds(Trial& trial) {
    enrollUntil(trial, Stage::Registering);
    trial.status(enrolledDocument());
    expectEqual("notices of the end", trial.enrollment("complete", "success").shown(),
                {"tile update Transition \"Enrollment complete. Please wait...\" \"Enrollment complete\" []",
                 "hide-window",
                 ("toast \"Norvane Kestrel Suite\" \"Congratulations! You have successfully enrolled and now "
                  "have access to your secure resources.\""),
                 std::string(closeBrowser), "stats-overview update", "stats-details update",
                 "tile update Good \"Wren Gate is active.\" \"Active\" []", "adv-enrollment update enabled",
                 "adv-sync update enabled \"11/14/23 21:56:40\""});
}

struct Failure {
    std::string_view substatus;
    std::string_view title;
    std::string_view message;
};
constexpr std::array failures{
    Failure{"internal_error", "Internal Error", "An internal error occurred. Contact your IT help desk."},
    Failure{"initialization_error", "Initialization error",
            "Unable to initialize enrollment. Contact your IT help desk."},
    Failure{"user_authentication_error", "Authentication error",
            "Unable to verify your identity. Contact your IT help desk."},
    Failure{"device_registration_error", "Device Registration error",
            "Failed to register your device. Contact your IT help desk."},
    Failure{"posture_registration_error", "Posture Registration error",
            "Failed to register with Plover Desktop. Contact your IT help desk."},
    Failure{"certificate_enrollment_error", "Certificate Registration error",
            "Failed to obtain the enrollment certificate. Contact your IT help desk."},
    Failure{"server_communication_error", "Server Communication error",
            "Enrollment service is not responding. Contact your IT help desk."},
    Failure{"server_certificate_error", "Server Certificate error",
            "Failed to verify enrollment server certificate. Contact your IT help desk."},
    Failure{"posture_no_hardware_security_error", "TPM Error",
            "Failed to communicate with Trusted Platform Module (TPM) on your device. Contact your IT help "
            "desk."},
};

void tellsWhyItFails(Trial& trial) {
    for (const Failure& failure : failures) {
        enrollUntil(trial, Stage::Registering);
        const Lines seen = trial.enrollment("complete", failure.substatus).changed();
        expectEqual(joined({"notices of ", failure.substatus}), linesFrom(seen, 0, 5),
                    {"tile update Attention \"Enrolling...\" \"Enrollment error\" []",
                     "popup wren_client_error_dialog",
                     joined({"history ", failure.title, " ", failure.message}), std::string(closeBrowser),
                     std::string(finalTile)});
    }
}

void endsQuietlyWithoutARow(Trial& trial) {
    for (const char* substatus : {"", "invalid_choice_id", "invalid_enrollment_id"}) {
        enrollUntil(trial, Stage::Registering);
        expectEqual(joined({"the first notice of \"", substatus, "\""}),
                    lineAt(trial.enrollment("complete", substatus).changed(), 0), finalTile);
    }
}

void fails(Trial& trial) {
    for (const Stage stage : {Stage::Requested, Stage::Started, Stage::LoggingIn}) {
        enrollUntil(trial, stage);
        const Lines seen = trial.enrollment("error", "server_certificate_error").changed();
        expectEqual("the tile", lineAt(seen, 0),
                    "tile update Attention \"Enrolling...\" \"Enrollment error\" []");
        expectContains("notices", seen,
                       "history Internal Error An internal error occurred. Contact your IT help desk.");
    }
}

void onlyCompletesWhileRegistering(Trial& trial) {
    enrollUntil(trial, Stage::Registering);
    expectEqual("notices of an error", trial.enrollment("error", "internal_error").shown(), {});
    expectEqual("notices of a start", trial.enrollment("started").shown(), {});
    expectEqual("the tile at the end", lineAt(trial.enrollment("complete", "cancelled").changed(), 0),
                "tile update Transition \"Enrollment cancelled.\" \"Enrollment cancelled\" []");
}

void doesNotCompleteUnstarted(Trial& trial) {
    enrollUntil(trial, Stage::Requested);
    expectEqual("notices of a completion", trial.enrollment("complete", "success").shown(), {});
    expectEqual("notices of a login", trial.login().shown(), {});
}

void isCancelled(Trial& trial) {
    for (const Stage stage : {Stage::Started, Stage::LoggingIn, Stage::Registering}) {
        enrollUntil(trial, stage);
        const Step cancelled = trial.press("quill_tile_cancel_action_btn");
        expectEqual("requests", cancelled.requests(),
                    {R"(CancelEnrollment {"version":"1","enrollment_id":"enrollment-1"})"});
        expectEqual("the tile", lineAt(cancelled.changed(), 0),
                    "tile update Transition \"Cancelling enrollment process. Please wait...\" \"Cancelling "
                    "enrollment\" [Cancel-]");
        const Lines ended = trial.enrollment("complete", "cancelled").changed();
        expectEqual("the tile at the end", lineAt(ended, 0),
                    "tile update Transition \"Enrollment cancelled.\" \"Enrollment cancelled\" []");
        expectEqual("the tile behind the end", lineAt(ended, ended.size() - 3), finalTile);
    }
}

void isCancelledByItsBrowser(Trial& trial) {
    enrollUntil(trial, Stage::LoggingIn);
    expectEqual("requests",
                trial.event("<vtguiEvent id=\"quill_enrollment_browser_close_btn_OnClose\"/>").requests(),
                {R"(CancelEnrollment {"version":"1","enrollment_id":"enrollment-1"})"});
}

void isAborted(Trial& trial) {
    for (const Stage stage : {Stage::Requested, Stage::Started, Stage::LoggingIn, Stage::Registering}) {
        enrollUntil(trial, stage);
        const Lines seen = trial.status(errorDocument("no_service")).changed();
        expectEqual("the tile", lineAt(seen, 0),
                    "tile update Error \"Wren Gate service requires user approval.\" \"Wren Gate service "
                    "error\" [Details]");
        expect(stage < Stage::LoggingIn || lineAt(seen, seen.size() - 1) == closeBrowser,
               "the browser stays open");
        trial.status(notEnrolledDocument());
        expectEqual("requests of the next enrollment",
                    static_cast<std::int64_t>(trial.press("quill_tile_enroll_action_btn").requests().size()),
                    1);
    }
}

void losesASync(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.press("quill_adv_unenroll_btn");
    expectEqual("requests of a synchronization meanwhile", trial.press("quill_config_sync_btn").requests(),
                {});
}

void takesTheNewId(Trial& trial) {
    enrollUntil(trial, Stage::Requested);
    const std::string other = R"({"version":"1","status":"started","substatus":"","enrollment_id":"other"})";
    trial.deliver(wrensim_enrollment_status_notification, other);
    expectEqual("requests of Cancel", trial.press("quill_tile_cancel_action_btn").requests(),
                {R"(CancelEnrollment {"version":"1","enrollment_id":"other"})"});
}

constexpr Check enrollmentTable[] = {
    {"enrollment.begin", "Enroll says so on the tile and asks the backend with the first choice.",
     Through::Both, &begins},
    {"enrollment.once", "A second press of Enroll asks for nothing.", Through::Both, &beginsOnce},
    {"enrollment.started", "An enrollment that has started may be cancelled.", Through::Both,
     &mayBeCancelledOnceStarted},
    {"enrollment.login", "A request to log in opens the browser.", Through::Both, &opensTheBrowser},
    {"enrollment.foreign-login", "A login of another enrollment opens nothing, nor does the next one.",
     Through::Both, &opensNoForeignLogin},
    {"enrollment.cookie", "The login's end sends the cookie and shows the progress.", Through::Both,
     &sendsTheCookie},
    {"enrollment.browser-error", "A browser's error is a login without a cookie.", Through::Both,
     &repliesToABrowsersError},
    {"enrollment.statuses-kept", "Documents meanwhile are kept and drawn at the end.", Through::Both,
     &keepsStatusesForTheEnd},
    {"enrollment.success", "A success hides the window, congratulates, closes the browser and draws.",
     Through::Both, &succeeds},
    {"enrollment.failures", "Every failure has its error popup, and closes the browser.", Through::Both,
     &tellsWhyItFails},
    {"enrollment.rowless", "A completion without a row of its own draws nothing but what follows.",
     Through::Both, &endsQuietlyWithoutARow},
    {"enrollment.error", "An error before the registration ends the enrollment.", Through::Both, &fails},
    {"enrollment.completes-only", "While registering nothing but a completion counts.", Through::Both,
     &onlyCompletesWhileRegistering},
    {"enrollment.not-started", "An enrollment that has not started does not complete.", Through::Both,
     &doesNotCompleteUnstarted},
    {"enrollment.cancel", "Cancel asks the backend, at every stage.", Through::Both, &isCancelled},
    {"enrollment.browser-closed", "Closing the browser cancels the enrollment.", Through::Both,
     &isCancelledByItsBrowser},
    {"enrollment.abort", "State \"error\" ends an enrollment at every stage, and another may begin.",
     Through::Both, &isAborted},
    {"enrollment.lost-sync", "A synchronization while something is in progress is lost.", Through::Both,
     &losesASync},
    {"enrollment.id", "The id of the start is the one that later requests name.", Through::Both,
     &takesTheNewId},
};

} // namespace

std::span<const Check> enrollmentChecks() { return enrollmentTable; }

} // namespace host::validate
