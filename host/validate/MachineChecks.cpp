// Unenrollments, verifications and details, and how they leave each other alone.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

namespace host::validate {
namespace {

constexpr std::string_view verifyControl = "quill_dataplane_auth_browser_web_control";
constexpr std::string_view openVerification = "popup quill_dataplane_auth_browser_dialog browse_for_cookie";
constexpr std::string_view closeVerification = "dispose quill_dataplane_auth_browser_dialog";

void beginUnenrolling(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.press("quill_adv_unenroll_btn");
}

void unenrolls(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    const Step step = trial.press("quill_adv_unenroll_btn");
    expectEqual("requests", step.requests(),
                {R"(InitiateUnenrollment {"version":"1","enrollment_id":"enrollment-1",)"
                 R"("enrollment_context":""})"});
    expectEqual("notices", step.shown(),
                {"tile update Transition \"Unenrolling...\" \"Unenrolling\" [Enroll-]",
                 "adv-enrollment update disabled"});
    expectEqual("requests of a second press", trial.press("quill_adv_unenroll_btn").requests(), {});
}

void endsAnUnenrollment(Trial& trial) {
    beginUnenrolling(trial);
    expectEqual("notices of the start", trial.unenrollment("started").shown(),
                {"tile update Transition \"Unenrolling...\" \"Unenrolling\" [Cancel-]"});
    expectEqual("notices of a status meanwhile", trial.status(notEnrolledDocument()).shown(), {});
    const Lines ended = trial.unenrollment("complete", "success").changed();
    expectEqual("the tile at the end", lineAt(ended, 0),
                "tile update Transition \"Unenrollment complete. Please wait...\" \"Unenrollment "
                "complete\" [Cancel]");
    expectEqual("the tile behind the end", lineAt(ended, 1),
                "tile update Attention \"Registration is required to access secure resources.\" "
                "\"Registration required\" [Enroll]");
}

void tellsOfAFailedUnenrollment(Trial& trial) {
    beginUnenrolling(trial);
    trial.unenrollment("started");
    const Lines ended = trial.unenrollment("complete", "internal_error").changed();
    expectEqual("the tile", lineAt(ended, 0), "tile update Attention \"Unenrolling...\" \"Unenrolling\" []");
    expectEqual("the popup", lineAt(ended, 1), "popup wren_client_error_dialog");
    expectEqual("the history", lineAt(ended, 2),
                "history Unenrollment error An internal error has occurred.");
}

void passesUnenrollmentErrorsBy(Trial& trial) {
    beginUnenrolling(trial);
    expectEqual("notices of an error", trial.unenrollment("error", "internal_error").shown(), {});
    expectEqual("notices of an early end", trial.unenrollment("complete", "success").shown(), {});
    trial.unenrollment("started");
    expectEqual("notices of a later error", trial.unenrollment("error", "internal_error").shown(), {});
    expectEqual("notices of a second start", trial.unenrollment("started").shown(), {});
}

void abortsAnUnenrollment(Trial& trial) {
    beginUnenrolling(trial);
    trial.unenrollment("started");
    trial.status(errorDocument("ipc_failure"));
    trial.status(enrolledDocument());
    expectEqual("requests of the next one",
                static_cast<std::int64_t>(trial.press("quill_adv_unenroll_btn").requests().size()), 1);
}

void enrollsWhileItUnenrolls(Trial& trial) {
    beginUnenrolling(trial);
    trial.status(notEnrolledDocument());
    expectEqual("requests of Enroll meanwhile", trial.press("quill_tile_enroll_action_btn").requests(),
                {R"(InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1",)"
                 R"("enrollment_context":""})"});
}

void beginVerifying(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(0, 1));
    trial.press("quill_tile_verify_action_btn");
}

void sendsTheVerification(Trial& trial) {
    beginVerifying(trial);
    const Step step = trial.event(joined({"<vtguiEvent id=\"", verifyControl, "_OnPress\"><webbrowser id=\"",
                                          verifyControl, "\" value=\"cookie\"/></vtguiEvent>"}));
    expectEqual("requests", step.requests(),
                {R"(DataplaneAuthReply {"version":"1","context_id":"context-1",)"
                 R"("authorization_cookie":"cookie"})"});
    expectEqual("notices", step.shown(), {std::string(closeVerification)});
}

void repliesToAVerificationsError(Trial& trial) {
    beginVerifying(trial);
    const Step step = trial.event(joined({"<vtguiEvent id=\"", verifyControl, "_OnError\"><webbrowser id=\"",
                                          verifyControl, "\" value=\"x\" error=\"timeout\"/></vtguiEvent>"}));
    expectEqual("requests", step.requests(),
                {R"(DataplaneAuthReply {"version":"1","context_id":"context-1",)"
                 R"("authorization_cookie":""})"});
}

void cancelsAVerification(Trial& trial) {
    beginVerifying(trial);
    const Step step = trial.event("<vtguiEvent id=\"quill_dataplane_auth_browser_close_btn_OnClose\"/>");
    expectEqual("requests", step.requests(), {});
    expectEqual("notices", step.shown(), {std::string(closeVerification)});
    expectEqual("notices of the next press", trial.press("quill_tile_verify_action_btn").shown(),
                {std::string(openVerification)});
}

void replacesAVerification(Trial& trial) {
    beginVerifying(trial);
    trial.dataplane(with(dataplaneDocument(0, 1), "/dataplane_auth_requests/0/context_id", "second"));
    expectEqual("notices", trial.press("quill_tile_verify_action_btn").shown(),
                {std::string(openVerification)});
    expectEqual("requests", trial.press(verifyControl).requests(),
                {R"(DataplaneAuthReply {"version":"1","context_id":"second","authorization_cookie":""})"});
}

void verifiesWhileItEnrolls(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    trial.dataplane(dataplaneDocument(0, 1));
    expectEqual("notices of Verify meanwhile", trial.press("quill_tile_verify_action_btn").shown(),
                {std::string(openVerification)});
}

void opensDetailsOnce(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(1, 0));
    expectEqual("notices of the toast's button", trial.press("quill_tile_details_action_toast_btn").shown(),
                {"popup quill_alert_browser_dialog browse_for_local_content"});
    expectEqual(
        "notices of a change that leaves the alerts: tile and panels",
        static_cast<std::int64_t>(trial.status(with(enrolledDocument(), "/substate", "x")).changed().size()),
        3);
    trial.event("<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>");
    expectEqual("notices of the tile's button", trial.press("quill_tile_details_action_btn").shown(),
                {"popup quill_alert_browser_dialog browse_for_local_content"});
}

void waitsForAStatus(Trial& trial) {
    trial.begin();
    expectEqual("notices of a dataplane document before any status",
                trial.dataplane(dataplaneDocument(1, 0)).changed(), {});
    expectEqual("the tile of the first status", lineAt(trial.status(enrolledDocument()).changed(), 0),
                "tile update Attention \"Tile 1\" \"Access blocked\" [Details]");
}

constexpr Check machineTable[] = {
    {"unenrollment.begin", "Unenroll asks the backend, once, and says so.", Through::Both, &unenrolls},
    {"unenrollment.success", "A success draws what came meanwhile.", Through::Both, &endsAnUnenrollment},
    {"unenrollment.failure", "A failure has its error popup.", Through::Both, &tellsOfAFailedUnenrollment},
    {"unenrollment.error", "Nothing but a completion ends an unenrollment that has started.", Through::Both,
     &passesUnenrollmentErrorsBy},
    {"unenrollment.abort", "State \"error\" ends an unenrollment, and another may begin.", Through::Both,
     &abortsAnUnenrollment},
    {"unenrollment.uncoupled", "An enrollment may begin while an unenrollment runs.", Through::Both,
     &enrollsWhileItUnenrolls},
    {"verification.cookie", "The login's end sends the cookie and closes the browser.", Through::Both,
     &sendsTheVerification},
    {"verification.error", "A browser's error is a login without a cookie.", Through::Both,
     &repliesToAVerificationsError},
    {"verification.closed", "Closing the browser ends a verification without a reply.", Through::Both,
     &cancelsAVerification},
    {"verification.replaced", "A second request takes the first one's place.", Through::Both,
     &replacesAVerification},
    {"verification.uncoupled", "A verification may begin while an enrollment runs.", Through::Both,
     &verifiesWhileItEnrolls},
    {"details.open", "Details open from tile and toast, and again when they were closed.", Through::Both,
     &opensDetailsOnce},
    {"machine.dataplane-first", "A dataplane document before any status waits for the first one.",
     Through::Both, &waitsForAStatus},
};

} // namespace

std::span<const Check> machineChecks() { return machineTable; }

} // namespace host::validate
