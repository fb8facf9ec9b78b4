// Which alerts follow from the documents, and in which order.
#include "host/Text.h"
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <array>

namespace host::validate {
namespace {

namespace json = boost::json;

/// What the page of the details gets for a status and a dataplane document.
json::value pageFor(Trial& trial, const json::value& status, const json::value& dataplane) {
    trial.begin();
    trial.dataplane(dataplane);
    trial.status(status);
    const NoticeElement notice =
        trial.press("quill_tile_details_action_btn").notice("popup quill_alert_browser_dialog");
    const NoticeElement* browser = findById(notice, "quill_alert_browser_web_control");
    expect(browser != nullptr, "the details have no browser");
    const auto text = decodeBase64(browser->attribute("event_dispatch_detail"));
    expect(text.has_value(), "the page's payload is no Base64");
    return json::parse(*text).at("value");
}

Lines titlesFor(Trial& trial, const json::value& status, const json::value& dataplane) {
    const json::value page = pageFor(trial, status, dataplane);
    Lines titles;
    for (const json::value& alert : page.at("alerts").as_array()) {
        titles.emplace_back(alert.at("title").as_string());
    }
    return titles;
}

void findsNothingWrong(Trial& trial) {
    expectEqual("the page", json::serialize(pageFor(trial, enrolledDocument(), dataplaneDocument(0, 0))),
                R"({"alerts":[]})");
}

json::value troubledStatus() {
    json::value status = with(enrolledDocument(), "/interceptor_connectivity", "disconnected");
    status = with(status, "/posture_connectivity", "unreachable");
    status = with(status, "/hw_key_store_availability", "not_supported");
    status = with(status, "/enrollments/0/config_sync_status/server_connectivity", "unreachable");
    status = with(status, "/enrollments/0/config_sync_status/fail_cnt_since_last_sync_success", 5);
    return with(status, "/enrollments/0/dataplane_status/server_connectivity", "bad_server_cert");
}

void findsEveryTrouble(Trial& trial) {
    expectEqual("the alerts' titles", titlesFor(trial, troubledStatus(), dataplaneDocument(0, 0)),
                {"Plover Desktop error", "Network interceptor error", "TPM Error", "Configuration sync error",
                 "Server connectivity error"});
}

void sortsByPriorityAndTime(Trial& trial) {
    json::value dataplane = dataplaneDocument(5, 0);
    dataplane = with(dataplane, "/dataplane_alerts/0/category", "connectivity_error");
    dataplane = with(dataplane, "/dataplane_alerts/1/category", "posture_error");
    dataplane = with(dataplane, "/dataplane_alerts/4/category", "something_new");
    expectEqual(
        "the alerts' titles",
        titlesFor(trial, with(enrolledDocument(), "/posture_connectivity", "bad_response"), dataplane),
        {"Plover Desktop error", "Alert 2", "Alert 4", "Alert 3", "Alert 5", "Alert 1"});
}

void keepsTheOrderOfEquals(Trial& trial) {
    json::value dataplane = dataplaneDocument(3, 0);
    for (const char* place : {"/dataplane_alerts/0/timestamp", "/dataplane_alerts/1/timestamp",
                              "/dataplane_alerts/2/timestamp"}) {
        dataplane = with(dataplane, place, 1700000000);
    }
    expectEqual("the alerts' titles", titlesFor(trial, enrolledDocument(), dataplane),
                {"Alert 1", "Alert 2", "Alert 3"});
}

void putsRenewalFirst(Trial& trial) {
    const json::value status =
        with(troubledStatus(), "/enrollments/0/certificate_status/certificate_state", "revoked");
    const json::value page = pageFor(trial, status, dataplaneDocument(2, 2));
    expectEqual(
        "the page", json::serialize(page),
        R"({"alerts":[{"title":"Verify your identity","shortDescription":"Please verify your identity to )"
        R"(renew your suspended enrollment and continue access to secure resources.","longDescription":)"
        R"("Please verify your identity to renew your suspended enrollment and continue access to secure )"
        R"(resources. Click Continue to sign in and follow the authentication prompts.","actions":[{"type":)"
        R"("local","label":"Continue","detailPage":{"title":"Verify your identity","description":)"
        R"("Enrollment will continue in a new window."},"kestrelSuiteEvent":{"type":"re-enroll","value":)"
        R"("enrollment-1"}}]}]})");
}

void renewsOnlyWhatMayBe(Trial& trial) {
    json::value status = with(enrolledDocument(), "/enrollments/0/reenroll_allowed", false);
    status = with(status, "/enrollments/0/certificate_status/certificate_state", "revoked");
    expectEqual("the alerts' titles", titlesFor(trial, status, dataplaneDocument(0, 0)), {});
}

void putsVerificationsSecond(Trial& trial) {
    const json::value page = pageFor(trial, troubledStatus(), dataplaneDocument(2, 2));
    const json::array& alerts = page.at("alerts").as_array();
    expectEqual("alerts", static_cast<std::int64_t>(alerts.size()), 2);
    Lines contexts;
    for (const json::value& alert : alerts) {
        contexts.emplace_back(alert.at_pointer("/actions/0/kestrelSuiteEvent/value").as_string());
    }
    expectEqual("the contexts", contexts, {"context-1", "context-2"});
}

void needsAnEnrollment(Trial& trial) {
    expectEqual("the alerts' titles without an enrollment",
                titlesFor(trial, notEnrolledDocument(), dataplaneDocument(2, 2)), {});
}

void grantsSyncsFiveFailures(Trial& trial) {
    const json::value bad =
        with(enrolledDocument(), "/enrollments/0/config_sync_status/server_connectivity", "bad_response");
    const std::string_view count = "/enrollments/0/config_sync_status/fail_cnt_since_last_sync_success";
    const std::string_view time = "/enrollments/0/config_sync_status/last_config_sync_success";
    const json::value quiet = dataplaneDocument(0, 0);
    expectEqual("the alerts after four failures", titlesFor(trial, with(bad, count, 4), quiet), {});
    expectEqual("the alerts after five failures", titlesFor(trial, with(bad, count, 5), quiet),
                {"Configuration sync error"});
    expectEqual("the alerts where it never succeeded",
                titlesFor(trial, with(with(bad, count, 0), time, 0), quiet), {"Configuration sync error"});
}

void knowsQuietFaults(Trial& trial) {
    json::value status = with(enrolledDocument(), "/hw_key_store_availability", "internal_error");
    status = with(status, "/interceptor_connectivity", "unknown");
    status = with(status, "/posture_connectivity", "something_new");
    expectEqual("the alerts", titlesFor(trial, status, dataplaneDocument(0, 0)), {});
}

void fillsTextsIn(Trial& trial) {
    json::value dataplane = dataplaneDocument(1, 0);
    for (const char* key : {"title", "short_message", "long_message", "url_label"}) {
        dataplane = with(dataplane, joined({"/dataplane_alerts/0/", key}), "");
    }
    expectEqual("the page", json::serialize(pageFor(trial, enrolledDocument(), dataplane)),
                R"({"alerts":[{"title":"Access blocked","shortDescription":"","longDescription":"Access to )"
                R"(secure resource is blocked. Contact your IT help desk.","actions":[{"type":"remote",)"
                R"("label":"See Details","url":"https://help.example/1"}]}]})");
}

void leavesActionsOut(Trial& trial) {
    const json::value page =
        pageFor(trial, enrolledDocument(), with(dataplaneDocument(1, 0), "/dataplane_alerts/0/url", ""));
    expect(!page.at_pointer("/alerts/0").as_object().contains("actions"),
           "an alert without an address has an action");
}

void tellsWhatKeepsFromEnrolling(Trial& trial) {
    json::value status = with(notEnrolledDocument(), "/posture_connectivity", "unreachable");
    status = with(status, "/interceptor_connectivity", "load_failed");
    const json::value page = pageFor(trial, status, dataplaneDocument(0, 0));
    expectEqual("the page's texts", json::serialize(page.at("multiAlertPageStrings")),
                R"({"alertSectionTitle":"Cannot begin enrollment","alertSectionDescription":"Several issues )"
                R"(are preventing enrollment. Please take a moment to review the detailed information )"
                R"(provided.","alertSectionActionLabel":"See Details","alertListTitle":"Cannot begin )"
                R"(enrollment","alertListDescription":"Contact your IT help desk about the following )"
                R"(errors."})");
}

constexpr Check alertTable[] = {
    {"alerts.none", "Where all is well the page gets an empty list.", Through::Both, &findsNothingWrong},
    {"alerts.components", "Each component's trouble is an alert, in the order of priority.", Through::Both,
     &findsEveryTrouble},
    {"alerts.order", "Alerts are sorted by priority, then the newest first.", Through::Both,
     &sortsByPriorityAndTime},
    {"alerts.stable", "Alerts of one priority and time keep their order.", Through::Both,
     &keepsTheOrderOfEquals},
    {"alerts.renewal", "A certificate to renew hides every other alert.", Through::Both, &putsRenewalFirst},
    {"alerts.no-renewal", "What may not be renewed is no alert.", Through::Both, &renewsOnlyWhatMayBe},
    {"alerts.verify", "Requests to verify hide every other trouble.", Through::Both,
     &putsVerificationsSecond},
    {"alerts.enrollment", "Without an enrollment dataplane documents cause no alert.", Through::Both,
     &needsAnEnrollment},
    {"alerts.sync-grace", "A synchronization may fail four times in silence, if it ever succeeded.",
     Through::Both, &grantsSyncsFiveFailures},
    {"alerts.quiet", "Unknown words and a key store's internal error are no alert.", Through::Both,
     &knowsQuietFaults},
    {"alerts.texts", "What an alert leaves empty has a text of the plugin's.", Through::Both, &fillsTextsIn},
    {"alerts.no-action", "An alert without an address has no action.", Through::Both, &leavesActionsOut},
    {"alerts.not-enrolled", "Several alerts that keep from enrolling have texts of their own.", Through::Both,
     &tellsWhatKeepsFromEnrolling},
};

} // namespace

std::span<const Check> alertChecks() { return alertTable; }

} // namespace host::validate
