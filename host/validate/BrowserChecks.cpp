// The browsers that the plugin opens, and what its local page gets.
#include "host/Text.h"
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

namespace host::validate {
namespace {

void beginEnrolling(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    trial.enrollment("started");
}

void beginWithAlerts(Trial& trial, std::size_t count) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(count, 0));
}

/// "name=value" of an element, less what differs between machines.
Lines attributesOf(const NoticeElement& element) {
    Lines lines;
    for (const auto& [name, value] : element.attributes) {
        if (name != "timestamp") {
            lines.push_back(joined({name, "=", name == "user_agent" ? "" : value}));
        }
    }
    return lines;
}

const NoticeElement& partOf(const NoticeElement& notice, std::string_view name) {
    const NoticeElement* popup = notice.child("popup");
    expect(popup != nullptr, "the notice has no popup");
    const NoticeElement* part = name == "popup" ? popup : popup->child(name);
    expect(part != nullptr, joined({"the popup has no ", name}));
    return *part;
}

std::string payloadOf(const NoticeElement& notice) {
    const std::optional<std::string> payload =
        decodeBase64(partOf(notice, "webbrowser").attribute("event_dispatch_detail"));
    expect(payload.has_value(), "the page's payload is no Base64");
    return *payload;
}

constexpr std::string_view loginId = "quill_enrollment_browser_web_control";
constexpr std::string_view verifyId = "quill_dataplane_auth_browser_web_control";
constexpr std::string_view alertId = "quill_alert_browser_web_control";

void opensTheLogin(Trial& trial) {
    beginEnrolling(trial);
    const NoticeElement notice = trial.login().notice("popup quill_enrollment_browser_dialog");
    expectEqual(
        "the popup", attributesOf(partOf(notice, "popup")),
        {"id=quill_enrollment_browser_dialog", "type=browser", "subtype=wren_auth_browser", "show=true"});
    expectEqual("the title", partOf(notice, "title").attribute("value"), "Norvane Kestrel Suite - Wren Gate");
    expectEqual("the browser", attributesOf(partOf(notice, "webbrowser")),
                {joined({"id=", loginId}), "operation=browse_for_cookie",
                 "start_url=https://login.example/start", "final_url=https://login.example/end",
                 "cookie_name=enrollment-cookie", "focus=true",
                 "user_agent=", joined({"OnError=", loginId, "_OnError"}), joined({"OnErrorID=", loginId}),
                 joined({"OnPress=", loginId, "_OnPress"}), joined({"OnPressID=", loginId})});
    expectEqual(
        "the close button", attributesOf(partOf(notice, "closebutton")),
        {"id=quill_enrollment_browser_close_btn", "OnClose=quill_enrollment_browser_close_btn_OnClose"});
}

void leavesAnEmptyCookieNameOut(Trial& trial) {
    beginEnrolling(trial);
    const std::string document =
        R"({"version":"1","enrollment_id":"enrollment-1","start_url":"s","end_url":"","cookie_name":""})";
    const NoticeElement notice = trial.deliver(wrensim_enrollment_auth_request, document)
                                     .notice("popup quill_enrollment_browser_dialog");
    const NoticeElement& browser = partOf(notice, "webbrowser");
    expect(!browser.has("cookie_name") && !browser.has("final_url"), "an empty attribute is written");
}

void namesTheUserAgent(Trial& trial) {
    beginEnrolling(trial);
    const NoticeElement notice = trial.login().notice("popup quill_enrollment_browser_dialog");
    const std::string_view agent = partOf(notice, "webbrowser").attribute("user_agent");
    expect(agent.starts_with("Norvane Kestrel Suite - Wren Gate 5.1.11.2143 (") && agent.ends_with(")"),
           joined({"the user agent is \"", agent, "\""}));
}

void showsTheProgress(Trial& trial) {
    beginEnrolling(trial);
    trial.login();
    const NoticeElement notice =
        trial.press(loginId).notice("popup quill_enrollment_browser_dialog browse_for_local_content");
    expectEqual("the page", partOf(notice, "webbrowser").attribute("start_url"), "wren/v1/index.html");
    expectEqual("the page's event", partOf(notice, "webbrowser").attribute("event_dispatch_name"),
                "update-flow");
    expectEqual("the payload", payloadOf(notice),
                R"({"flow":"enrollment","value":{"state":"progress","title":"Enrolling...",)"
                R"("percent_complete":0}})");
}

void opensTheVerification(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(0, 2));
    const NoticeElement notice = trial.press("quill_tile_verify_action_btn")
                                     .notice("popup quill_dataplane_auth_browser_dialog browse_for_cookie");
    const NoticeElement& browser = partOf(notice, "webbrowser");
    expectEqual("the start", browser.attribute("start_url"), "https://login.example/start/1");
    expectEqual("the end", browser.attribute("final_url"), "https://login.example/end/1");
    expectEqual("the cookie", browser.attribute("cookie_name"), "cookie-1");
    expectEqual("the event", browser.attribute("OnPress"), joined({verifyId, "_OnPress"}));
}

void showsOneAlert(Trial& trial) {
    beginWithAlerts(trial, 1);
    const NoticeElement notice = trial.press("quill_tile_details_action_btn")
                                     .notice("popup quill_alert_browser_dialog browse_for_local_content");
    expectEqual("the popup's subtype", partOf(notice, "popup").attribute("subtype"), "wren_alert_browser");
    const NoticeElement& browser = partOf(notice, "webbrowser");
    expectEqual("the controls", browser.attribute("disable_browser_controls"), "true");
    expectEqual("the page's events", browser.attribute("OnBrowseEvent"), joined({alertId, "_OnBrowseEvent"}));
    expectEqual("the payload", payloadOf(notice),
                R"({"flow":"alert","value":{"alerts":[{"title":"Alert 1","shortDescription":"Short 1",)"
                R"("longDescription":"Long 1","actions":[{"type":"remote","label":"Help 1",)"
                R"("url":"https://help.example/1"}]}]}})");
}

void showsSeveralAlerts(Trial& trial) {
    beginWithAlerts(trial, 2);
    const std::string payload = payloadOf(
        trial.press("quill_tile_details_action_btn").notice("popup quill_alert_browser_dialog browse_for"));
    const std::string_view strings =
        R"("multiAlertPageStrings":{"alertSectionTitle":"Issues affecting secure resource access",)"
        R"("alertSectionDescription":"We have identified some issues that may affect your access to secure )"
        R"(resources. Please take a moment to review the detailed information provided.",)"
        R"("alertSectionActionLabel":"See Details","alertListTitle":"Issues affecting secure resource )"
        R"(access","alertListDescription":"Resolve the following issues or contact your IT help desk."}}})";
    expect(payload.ends_with(strings), joined({"the payload ends otherwise: ", payload}));
    expect(payload.find("Alert 2") < payload.find("Alert 1"), "the newer alert does not come first");
}

void raisesTheAlerts(Trial& trial) {
    beginWithAlerts(trial, 1);
    trial.press("quill_tile_details_action_btn");
    const Step raised = trial.press("quill_tile_details_action_btn");
    expectEqual("notices of the second press", raised.changed(), {"popup quill_alert_browser_dialog"});
    const NoticeElement notice = raised.notice("popup ");
    expectEqual("the popup", attributesOf(partOf(notice, "popup")),
                {"id=quill_alert_browser_dialog", "type=browser", "subtype=wren_alert_browser", "show=true"});
}

void updatesTheAlerts(Trial& trial) {
    beginWithAlerts(trial, 1);
    trial.press("quill_tile_details_action_btn");
    const NoticeElement notice =
        trial.dataplane(dataplaneDocument(2, 0)).notice("popup quill_alert_browser_dialog dispatch_event");
    const NoticeElement& browser = partOf(notice, "webbrowser");
    expect(!browser.has("start_url") && !browser.has("user_agent"), "the update leads to a page again");
    expect(payloadOf(notice).find("Alert 2") != std::string::npos, "the payload lacks the new alert");
}

void closesWithTheLastAlert(Trial& trial) {
    beginWithAlerts(trial, 1);
    trial.press("quill_tile_details_action_btn");
    const Lines closed = trial.dataplane(dataplaneDocument(0, 0)).changed();
    expectEqual("the last notice where no alert is left", lineAt(closed, closed.size() - 1),
                "dispose quill_alert_browser_dialog");
}

void disposesInShort(Trial& trial) {
    beginWithAlerts(trial, 1);
    trial.press("quill_tile_details_action_btn");
    const NoticeElement notice =
        trial.event("<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>").notice("dispose ");
    expectEqual("the popup", attributesOf(partOf(notice, "popup")),
                {"id=quill_alert_browser_dialog", "dispose=true"});
    expectEqual("parts of the popup", static_cast<std::int64_t>(partOf(notice, "popup").children.size()), 0);
}

constexpr Check browserTable[] = {
    {"browsers.login", "The login's browser has its addresses, its cookie and its events.", Through::Both,
     &opensTheLogin},
    {"browsers.empty-names", "What is empty is left out of a browser.", Through::Both,
     &leavesAnEmptyCookieNameOut},
    {"browsers.user-agent", "A browser gets the product's name, its version and the system's.", Through::Both,
     &namesTheUserAgent},
    {"browsers.progress", "After the login the browser shows the page of the progress.", Through::Both,
     &showsTheProgress},
    {"browsers.verify", "The first request to verify opens its own browser.", Through::Both,
     &opensTheVerification},
    {"browsers.one-alert", "The details show the local page with the alert.", Through::Both, &showsOneAlert},
    {"browsers.several-alerts", "Several alerts come with the page's texts, the newest first.", Through::Both,
     &showsSeveralAlerts},
    {"browsers.raise", "Details that are open come to the front.", Through::Both, &raisesTheAlerts},
    {"browsers.update", "Open details follow the alerts.", Through::Both, &updatesTheAlerts},
    {"browsers.last-alert", "The details close with the last alert.", Through::Both, &closesWithTheLastAlert},
    {"browsers.close", "A popup is closed by its id and nothing else.", Through::Both, &disposesInShort},
};

} // namespace

std::span<const Check> browserChecks() { return browserTable; }

} // namespace host::validate
