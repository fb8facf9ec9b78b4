// A backend that fails.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/Trial.h"

#include <array>
#include <functional>

namespace host::validate {
namespace {

constexpr std::string_view errorTile =
    "tile update Error \"Kestrel Suite error. Contact your IT help desk.\" \"Kestrel Suite error\" []";

void registerOne(Trial& trial) {
    trial.create();
    expectEqual("Register", trial.registerHost().result, 0);
}

/// The step that a fault spoils, and the plugin afterwards.
void expectFailedStart(Trial& trial) {
    const Step failed = trial.start();
    expectEqual("Start", failed.result, -10);
    const Lines seen = failed.changed();
    expectEqual(
        "notices behind the first screen", linesFrom(seen, 3, seen.size()),
        {std::string(errorTile), "adv-enrollment update disabled", "adv-sync update disabled \"None\""});
    expectEqual("ends of a stop", static_cast<std::int64_t>(failed.stopsDone()), 0);
    expectEqual("Stop", trial.stop().result, -10);
}

void standsAFailedConnection(Trial& trial) {
    for (const std::uint32_t result : {1U, 6U, 29U, 4711U}) {
        registerOne(trial);
        trial.backend().setResult("CreateApi", result, 1);
        expectFailedStart(trial);
        expectEqual("the next Start", trial.start().result, 0);
    }
}

void standsAFailedStart(Trial& trial) {
    for (const std::uint32_t result : {1U, 6U, 29U, 4711U}) {
        registerOne(trial);
        trial.backend().setResult("Start", result, 1);
        expectFailedStart(trial);
        expectEqual("the next Start", trial.start().result, 0);
    }
}

void standsANullConnection(Trial& trial) {
    registerOne(trial);
    trial.backend().setNullApi(true);
    expectFailedStart(trial);
    trial.backend().setNullApi(false);
    expectEqual("the next Start", trial.start().result, 0);
}

void standsALostFactory(Trial& trial) {
    registerOne(trial);
    trial.backend().setFactoryExpired(true);
    expectFailedStart(trial);
    trial.backend().setFactoryExpired(false);
    trial.begin();
    trial.expectUsable();
}

void standsAFailedStop(Trial& trial) {
    trial.begin();
    trial.backend().setResult("Stop", 2, 1);
    const Step stopped = trial.stop();
    expectEqual("Stop", stopped.result, 0);
    expectEqual("the order of Stop", stopped.order(), {"request Stop", "stop done"});
    expectEqual("the next Start", trial.start().result, 0);
    trial.expectUsable();
}

void unregistersAfterAFailedStart(Trial& trial) {
    registerOne(trial);
    trial.backend().setResult("Start", 6, 1);
    trial.start();
    expectEqual("Unregister", trial.unregister().result, 0);
}

struct Request {
    const char* operation;
    void (*prepare)(Trial& trial);
    Step (*make)(Trial& trial);
};

void prepareLogin(Trial& trial) {
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    trial.enrollment("started");
    trial.login();
}
void prepareDetails(Trial& trial) {
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(1, 0));
    trial.press("quill_tile_details_action_btn");
}
Step pageEvent(Trial& trial, std::string_view attributes) {
    constexpr std::string_view id = "quill_alert_browser_web_control";
    return trial.event(joined({"<vtguiEvent id=\"", id, "_OnBrowseEvent\"><webbrowser id=\"", id, "\" ",
                               attributes, "/></vtguiEvent>"}));
}

constexpr std::array requests{
    Request{"InitiateEnrollment", [](Trial& trial) { trial.status(notEnrolledDocument()); },
            [](Trial& trial) { return trial.press("quill_tile_enroll_action_btn"); }},
    Request{"InitiateReEnrollment", &prepareDetails,
            [](Trial& trial) { return pageEvent(trial, "type=\"re-enroll\" value=\"enrollment-1\""); }},
    Request{"EnrollmentAuthReply", &prepareLogin,
            [](Trial& trial) { return trial.press("quill_enrollment_browser_web_control"); }},
    Request{"CancelEnrollment", &prepareLogin,
            [](Trial& trial) { return trial.press("quill_tile_cancel_action_btn"); }},
    Request{"InitiateUnenrollment", [](Trial& trial) { trial.status(enrolledDocument()); },
            [](Trial& trial) { return trial.press("quill_adv_unenroll_btn"); }},
    Request{"PerformConfigSync", [](Trial& trial) { trial.status(enrolledDocument()); },
            [](Trial& trial) { return trial.press("quill_config_sync_btn"); }},
    Request{"TriggerPostureReports", &prepareDetails,
            [](Trial& trial) { return pageEvent(trial, "type=\"posture-update\""); }},
    Request{"DataplaneAuthReply",
            [](Trial& trial) {
                trial.status(enrolledDocument());
                trial.dataplane(dataplaneDocument(0, 1));
                trial.press("quill_tile_verify_action_btn");
            },
            [](Trial& trial) { return trial.press("quill_dataplane_auth_browser_web_control"); }},
};

void standsFailedRequests(Trial& trial) {
    for (const Request& request : requests) {
        for (const std::uint32_t result : {1U, 17U, 0xFFFFFFFFU}) {
            trial.begin();
            request.prepare(trial);
            trial.backend().setResult(request.operation, result, 1);
            const Step failed = request.make(trial);
            expectEqual(joined({"the result where ", request.operation, " fails"}), failed.result, 0);
            expectEqual("requests", static_cast<std::int64_t>(failed.requests().size()), 1);
            trial.expectUsable();
        }
    }
}

void showsNothingOfFailedRequests(Trial& trial) {
    for (const Request& request : requests) {
        Lines shown[2];
        for (const bool fails : {false, true}) {
            trial.begin();
            request.prepare(trial);
            trial.backend().setResult(request.operation, 17, fails ? 1 : 0);
            shown[fails ? 1 : 0] = request.make(trial).shown();
        }
        expectEqual(joined({"notices where ", request.operation, " fails"}), shown[1], shown[0]);
    }
}

void waitsForAFailedEnrollmentsEnd(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.backend().setResult("InitiateEnrollment", 17, 1);
    trial.press("quill_tile_enroll_action_btn");
    expectEqual("requests of the next press", trial.press("quill_tile_enroll_action_btn").requests(), {});
    expectEqual("notices of a start all the same", trial.enrollment("started").shown(),
                {"tile update Transition \"Enrolling...\" \"Enrolling\" [Cancel]"});
}

constexpr Check backendFaultTable[] = {
    {"faults.connection", "A connection that is not made leaves the plugin registered with the error shown.",
     Through::Both, &standsAFailedConnection},
    {"faults.start", "A connection that does not start does likewise.", Through::Both, &standsAFailedStart},
    {"faults.null-connection", "A connection that is null though made does likewise.", Through::Both,
     &standsANullConnection},
    {"faults.factory", "A factory that has gone does likewise, and another object finds the next one.",
     Through::Both, &standsALostFactory},
    {"faults.stop", "A stop that fails stops all the same.", Through::Both, &standsAFailedStop},
    {"faults.unregister", "After a failed start the plugin may be unregistered.", Through::Both,
     &unregistersAfterAFailedStart},
    {"faults.requests", "A request that fails leaves the plugin usable, and the host hears 0.", Through::Both,
     &standsFailedRequests},
    {"faults.screen", "A request that fails shows what one shows that does not.", Through::Both,
     &showsNothingOfFailedRequests},
    {"faults.enrollment", "After a failed request the enrollment waits for the backend.", Through::Both,
     &waitsForAFailedEnrollmentsEnd},
};

} // namespace

std::span<const Check> backendFaultChecks() { return backendFaultTable; }

} // namespace host::validate
