// What each event makes the plugin do, or keeps it from doing.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

namespace host::validate {
namespace {

void expectNothing(std::string_view what, const Step& step) {
    expectEqual(joined({"the result of ", what}), step.result, 0);
    expectEqual(joined({"requests of ", what}), step.requests(), {});
    expectEqual(joined({"notices of ", what}), step.shown(), {});
}

void refusesBeforeAnyStatus(Trial& trial) {
    trial.begin();
    for (const char* control :
         {"quill_tile_enroll_action_btn", "quill_tile_cancel_action_btn", "quill_tile_verify_action_btn",
          "quill_adv_unenroll_btn", "quill_config_sync_btn"}) {
        expectNothing(control, trial.press(control));
    }
}

void enrollsWithAChoiceOnly(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectNothing("Enroll without a choice", trial.press("quill_tile_enroll_action_btn"));
    trial.status(with(notEnrolledDocument(), "/enrollment_choices/0/id", ""));
    expectNothing("Enroll with a choice without id", trial.press("quill_tile_enroll_action_btn"));
}

void unenrollsAnEnrollmentOnly(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    expectNothing("Unenroll without an enrollment", trial.press("quill_adv_unenroll_btn"));
    trial.status(with(enrolledDocument(), "/enrollments/0/id", ""));
    expectNothing("Unenroll of an enrollment without id", trial.press("quill_adv_unenroll_btn"));
}

void syncsAnEnrollmentOnly(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    expectNothing("Sync without an enrollment", trial.press("quill_config_sync_btn"));
    trial.status(with(enrolledDocument(), "/enrollments/0/id", ""));
    expectNothing("Sync of an enrollment without id", trial.press("quill_config_sync_btn"));
}

void asksForASync(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    const Step step = trial.press("quill_config_sync_btn");
    expectEqual("the result", step.result, 0);
    expectEqual("requests", step.requests(),
                {R"(PerformConfigSync {"version":"1","enrollment_id":"enrollment-1"})"});
    expectEqual("notices", step.shown(), {});
}

void cancelsWhatIsInProgressOnly(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    expectNothing("Cancel without an enrollment in progress", trial.press("quill_tile_cancel_action_btn"));
}

void openDetails(Trial& trial, std::size_t alerts, std::size_t requests) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(alerts, requests));
    trial.press("quill_tile_details_action_btn");
}

Step pageEvent(Trial& trial, std::string_view attributes) {
    constexpr std::string_view id = "quill_alert_browser_web_control";
    return trial.event(joined({"<vtguiEvent id=\"", id, "_OnBrowseEvent\"><webbrowser id=\"", id, "\" ",
                               attributes, "/></vtguiEvent>"}));
}

void passesUnknownPageEventsBy(Trial& trial) {
    openDetails(trial, 1, 0);
    for (const char* attributes : {"", "value=\"x\"", "type=\"\"", "type=\"other\" value=\"x\"",
                                   "type=\"Posture-update\"", "type=\"posture-update \""}) {
        expectNothing(joined({"a page event with ", attributes}), pageEvent(trial, attributes));
    }
}

void triggersPostureReports(Trial& trial) {
    openDetails(trial, 1, 0);
    for (const char* attributes : {"type=\"posture-update\"", "type=\"posture-update\" value=\"x\""}) {
        expectEqual("requests", pageEvent(trial, attributes).requests(),
                    {R"(TriggerPostureReports {"version":"1"})"});
    }
}

void renewsFromThePage(Trial& trial) {
    openDetails(trial, 1, 0);
    expectNothing("a renewal without id", pageEvent(trial, "type=\"re-enroll\""));
    expectEqual("requests", pageEvent(trial, "type=\"re-enroll\" value=\"enrollment-1\"").requests(),
                {R"(InitiateReEnrollment {"version":"1","enrollment_id":"enrollment-1",)"
                 R"("enrollment_context":""})"});
}

void verifiesFromThePage(Trial& trial) {
    openDetails(trial, 0, 2);
    expectNothing("a verification without context", pageEvent(trial, "type=\"dataplane-auth\""));
    expectNothing("a verification of an unknown context",
                  pageEvent(trial, "type=\"dataplane-auth\" value=\"context-3\""));
    expectEqual("notices", pageEvent(trial, "type=\"dataplane-auth\" value=\"context-2\"").shown(),
                {"popup quill_dataplane_auth_browser_dialog browse_for_cookie"});
    expectEqual("requests", trial.press("quill_dataplane_auth_browser_web_control").requests(),
                {R"(DataplaneAuthReply {"version":"1","context_id":"context-2",)"
                 R"("authorization_cookie":""})"});
}

void dismissesABrokenPage(Trial& trial) {
    openDetails(trial, 1, 0);
    const Step step = trial.event("<vtguiEvent id=\"quill_alert_browser_web_control_OnError\"/>");
    expectEqual("notices of the page's error", step.shown(), {"dispose quill_alert_browser_dialog"});
    expectEqual("notices of the next press", trial.press("quill_tile_details_action_btn").shown(),
                {"popup quill_alert_browser_dialog browse_for_local_content"});
}

constexpr Check routeTable[] = {
    {"routes.before-status", "Before any status every click is refused with 0 and does nothing.",
     Through::Both, &refusesBeforeAnyStatus},
    {"routes.enroll-choice", "Enroll needs a choice with an id.", Through::Both, &enrollsWithAChoiceOnly},
    {"routes.unenroll-enrollment", "Unenroll needs an enrollment with an id.", Through::Both,
     &unenrollsAnEnrollmentOnly},
    {"routes.sync-enrollment", "Sync now needs an enrollment with an id.", Through::Both,
     &syncsAnEnrollmentOnly},
    {"routes.sync", "Sync now asks the backend for it and draws nothing.", Through::Both, &asksForASync},
    {"routes.cancel", "Cancel needs an enrollment in progress.", Through::Both, &cancelsWhatIsInProgressOnly},
    {"routes.page-unknown", "A page event of an unknown type does nothing.", Through::Both,
     &passesUnknownPageEventsBy},
    {"routes.page-posture", "The page may trigger posture reports, with or without a value.", Through::Both,
     &triggersPostureReports},
    {"routes.page-renewal", "The page may renew an enrollment that it names.", Through::Both,
     &renewsFromThePage},
    {"routes.page-verify", "The page may verify a request that it names.", Through::Both,
     &verifiesFromThePage},
    {"routes.page-error", "An error of the details' page dismisses them.", Through::Both,
     &dismissesABrokenPage},
};

} // namespace

std::span<const Check> routeChecks() { return routeTable; }

} // namespace host::validate
