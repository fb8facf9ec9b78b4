#include "tests/boundary/Scene.h"

#include "tests/support/Documents.h"

#include <map>
#include <optional>
#include <stdexcept>
#include <utility>

namespace test {
namespace {

/// What a step does: delivers a document or reports an event.
struct Action {
    std::optional<Document> document;
    std::string text;
};

std::string browserEvent(const std::string& control, const std::string& event,
                         const std::string& attributes) {
    return "<vtguiEvent id=\"" + control + "_" + event + "\"><webbrowser id=\"" + control + "\" " +
           attributes + "/></vtguiEvent>";
}

std::string click(const std::string& control) { return "<vtguiEvent id=\"" + control + "_OnPress\"/>"; }

std::map<std::string_view, Action> makeActions() {
    const std::string enrollmentBrowser = "quill_enrollment_browser_web_control";
    const std::string dataplaneBrowser = "quill_dataplane_auth_browser_web_control";
    const std::string alertBrowser = "quill_alert_browser_web_control";
    return {
        {"init", {Document::Status, textOf(initStatusDocument())}},
        {"error", {Document::Status, textOf(errorStatusDocument())}},
        {"notEnrolled", {Document::Status, textOf(notEnrolledStatusDocument())}},
        {"enrolled", {Document::Status, textOf(enrolledStatusDocument())}},
        {"alert", {Document::Dataplane, textOf(dataplaneDocument(1, 0))}},
        {"authRequest", {Document::Dataplane, textOf(dataplaneDocument(0, 1))}},
        {"noAlert", {Document::Dataplane, textOf(dataplaneDocument())}},
        {"started", {Document::EnrollmentStatus, textOf(enrollmentStatusDocument())}},
        {"failed", {Document::EnrollmentStatus, textOf(enrollmentStatusDocument("error", "internal_error"))}},
        {"complete", {Document::EnrollmentStatus, textOf(enrollmentStatusDocument("complete", "success"))}},
        {"login", {Document::EnrollmentAuthRequest, textOf(enrollmentAuthRequestDocument())}},
        {"unenrollStarted", {Document::UnenrollmentStatus, textOf(unenrollmentStatusDocument())}},
        {"unenrolled",
         {Document::UnenrollmentStatus, textOf(unenrollmentStatusDocument("complete", "success"))}},
        {"enroll", {{}, click("quill_tile_enroll_action_btn")}},
        {"cancel", {{}, click("quill_tile_cancel_action_btn")}},
        {"unenroll", {{}, click("quill_adv_unenroll_btn")}},
        {"sync", {{}, click("quill_config_sync_btn")}},
        {"details", {{}, click("quill_tile_details_action_btn")}},
        {"verify", {{}, click("quill_tile_verify_action_btn")}},
        {"loggedIn", {{}, browserEvent(enrollmentBrowser, "OnPress", "value=\"cookie\"")}},
        {"loginFailed", {{}, browserEvent(enrollmentBrowser, "OnError", "error=\"tls\"")}},
        {"authorized", {{}, browserEvent(dataplaneBrowser, "OnPress", "value=\"cookie\"")}},
        {"closeAlert", {{}, "<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>"}},
        {"posture", {{}, browserEvent(alertBrowser, "OnBrowseEvent", "type=\"posture-update\"")}},
        {"reEnroll",
         {{}, browserEvent(alertBrowser, "OnBrowseEvent", "type=\"re-enroll\" value=\"enrollment-1\"")}},
    };
}

const std::map<std::string_view, Action>& actions() {
    static const std::map<std::string_view, Action> all = makeActions();
    return all;
}

} // namespace

Scene::Scene(Interface interface) {
    backend.reset();
    plugin = makePlugin(interface);
    if (plugin) {
        plugin->Register(host);
    }
}

std::int32_t Scene::step(std::string_view name) {
    if (name == "start") {
        return plugin->Start();
    }
    if (name == "stop") {
        return plugin->Stop(0);
    }
    const Action& action = actions().at(name);
    if (!action.document) {
        return plugin->EventNotification(action.text.c_str());
    }
    if (const auto receiver = backend.receiver()) {
        deliver(*receiver, *action.document, action.text.c_str());
    }
    return 0;
}

void Scene::play(const std::vector<std::string_view>& steps) {
    for (const std::string_view name : steps) {
        step(name);
    }
}

void Scene::settle() {
    // Ends an enrollment at whatever stage, then an unenrollment, then what else shows.
    play({"failed", "complete", "unenrollStarted", "unenrolled", "error", "closeAlert", "noAlert"});
}

bool Scene::enrols() {
    bool isActive = false;
    const auto others = std::exchange(host.onNotice, nullptr);
    host.onNotice = [&isActive](const char* xml) {
        isActive |= std::string_view(xml).find("Wren Gate is active.") != std::string_view::npos;
    };
    play({"noAlert", "notEnrolled", "enroll", "started", "login", "loggedIn", "enrolled", "complete"});
    host.onNotice = others;
    return isActive;
}

const std::vector<std::string_view>& allSteps() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> all;
        for (const auto& [name, action] : actions()) {
            all.push_back(name);
        }
        return all;
    }();
    return names;
}

const std::vector<Stage>& allStages() {
    static const std::vector<Stage> stages{
        {"nothing known", {}},
        {"not enrolled", {"notEnrolled"}},
        {"enrolled", {"enrolled"}},
        {"in error", {"error"}},
        {"enrollment asked for", {"notEnrolled", "enroll"}},
        {"enrollment started", {"notEnrolled", "enroll", "started"}},
        {"logging in", {"notEnrolled", "enroll", "started", "login"}},
        {"enrollment in progress", {"notEnrolled", "enroll", "started", "login", "loggedIn"}},
        {"enrollment being cancelled", {"notEnrolled", "enroll", "started", "cancel"}},
        {"unenrollment asked for", {"enrolled", "unenroll"}},
        {"unenrollment started", {"enrolled", "unenroll", "unenrollStarted"}},
        {"alert dialog open", {"enrolled", "alert", "details"}},
        {"renewal asked for", {"enrolled", "alert", "details", "reEnroll"}},
        {"unenrollment with alert dialog", {"enrolled", "alert", "details", "unenroll"}},
        {"authenticating", {"enrolled", "authRequest", "verify"}},
    };
    return stages;
}

} // namespace test
