// Toasts and the error popup.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

#include <algorithm>

namespace host::validate {
namespace {

Lines linesWith(const Step& step, std::string_view words) {
    Lines lines = step.changed();
    std::erase_if(lines, [&](const std::string& line) { return line.find(words) == std::string::npos; });
    return lines;
}
Lines toastsIn(const Step& step) { return linesWith(step, "toast \""); }
Lines errorPopupsIn(const Step& step) { return linesWith(step, "wren_client_error_dialog"); }

void invitesToEnroll(Trial& trial) {
    trial.begin();
    const Lines invitation{"toast \"Norvane Kestrel Suite\" \"Registration is required to access secure "
                           "resources.\" quill_toast_enroll_action_btn"};
    expectEqual("toasts of the first status", toastsIn(trial.status(notEnrolledDocument())), invitation);
    expectEqual("toasts where the state stays",
                toastsIn(trial.status(with(notEnrolledDocument(), "/substate", "x"))), {});
    trial.status(errorDocument("ipc_failure"));
    expectEqual("toasts where the state comes back", toastsIn(trial.status(notEnrolledDocument())),
                invitation);
}

void invitesNobodyElse(Trial& trial) {
    trial.begin();
    expectEqual(
        "toasts where others manage the registration",
        toastsIn(trial.status(with(notEnrolledDocument(), "/enrollment_choices/0/enroll_allowed", false))),
        {});
}

void toastsAnAlert(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("toasts of an alert", toastsIn(trial.dataplane(dataplaneDocument(1, 0))),
                {"toast \"Access blocked\" \"Toast 1\" quill_tile_details_action_toast_btn"});
    expectEqual("toasts of the same alert",
                toastsIn(trial.status(with(enrolledDocument(), "/substate", "x"))), {});
}

void toastsSeveralAlerts(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("toasts of several alerts", toastsIn(trial.dataplane(dataplaneDocument(3, 0))),
                {"toast \"Some issues may be affecting secure resource access\" \"We have identified some "
                 "issues that may affect your access to secure resources. Please take a moment to review "
                 "the detailed information provided.\" quill_tile_details_action_toast_btn"});
    expectEqual("toasts of fewer alerts", toastsIn(trial.dataplane(dataplaneDocument(2, 0))), {});
}

void toastsARequest(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("toasts of a request to verify", toastsIn(trial.dataplane(dataplaneDocument(0, 1))),
                {"toast \"Verify your identity\" \"Your organization requires you to verify your identity so "
                 "that you can securely access corporate resources.\" quill_tile_verify_action_toast_btn"});
}

void toastsNothingEmpty(Trial& trial) {
    trial.begin();
    // An interceptor's trouble is told on the tile and has no text for a toast.
    const Step step = trial.status(with(enrolledDocument(), "/interceptor_connectivity", "disconnected"));
    expectEqual("the tile", lineAt(step.changed(), 0),
                "tile update Attention \"Cannot communicate with the network interceptor component.\" "
                "\"Network interceptor error\" [Details]");
    expectEqual("toasts", toastsIn(step), {});
}

void shapesToasts(Trial& trial) {
    trial.begin();
    const NoticeElement notice = trial.status(notEnrolledDocument()).notice("toast ");
    const NoticeElement& popup = notice.children.at(0);
    expectEqual("the toast's id", popup.attribute("id"), "wren_toast_popup");
    expectEqual("the toast's severity", popup.attribute("severity"), "info");
    const NoticeElement* button = findById(popup, "quill_toast_enroll_action_btn");
    expect(button != nullptr, "the toast has no button");
    expectEqual("the button's text", button->attribute("label"), "Enroll");
    expectEqual("the button's event", button->attribute("OnPress"), "quill_toast_enroll_action_btn_OnPress");
}

Step failAnEnrollment(Trial& trial, std::string_view substatus) {
    trial.press("quill_tile_enroll_action_btn");
    trial.enrollment("started");
    return trial.enrollment("complete", substatus);
}

void beginUnenrolled(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
}

void laysTheErrorOut(Trial& trial) {
    beginUnenrolled(trial);
    const NoticeElement notice =
        failAnEnrollment(trial, "internal_error").notice("popup wren_client_error_dialog");
    const NoticeElement& popup = notice.children.at(0);
    expectEqual("the popup's type", popup.attribute("type"), "custom");
    const NoticeElement* title = popup.child("title");
    expectEqual("the title", title != nullptr ? title->attribute("value") : "", "Norvane Kestrel Suite");
    const auto valueOf = [&](std::string_view id, std::string_view attribute) {
        const NoticeElement* element = findById(popup, id);
        return element != nullptr ? element->attribute(attribute) : std::string_view("missing");
    };
    expectEqual("the header", valueOf("wren_client_error_message_header_label", "value"), "Internal Error");
    expectEqual("the details", valueOf("wren_client_error_message_details_label", "value"),
                "An internal error occurred. Contact your IT help desk.");
    expectEqual("the button", valueOf("wren_client_error_close_btn", "label"), "Close");
    const NoticeElement* layout = popup.child("layout");
    expectEqual("rows", static_cast<std::int64_t>(layout != nullptr ? layout->children.size() : 0), 3);
}

void remembersTheError(Trial& trial) {
    beginUnenrolled(trial);
    expectEqual("the history", linesWith(failAnEnrollment(trial, "internal_error"), "history "),
                {"history Internal Error An internal error occurred. Contact your IT help desk."});
}

void showsAnErrorOnce(Trial& trial) {
    beginUnenrolled(trial);
    failAnEnrollment(trial, "internal_error");
    expectEqual("popups of the same error", errorPopupsIn(failAnEnrollment(trial, "internal_error")), {});
}

void replacesAnError(Trial& trial) {
    beginUnenrolled(trial);
    failAnEnrollment(trial, "internal_error");
    expectEqual("popups of another error", errorPopupsIn(failAnEnrollment(trial, "server_certificate_error")),
                {"dispose wren_client_error_dialog", "popup wren_client_error_dialog"});
}

void closesAnError(Trial& trial) {
    beginUnenrolled(trial);
    for (const char* event :
         {"wren_client_error_close_btn_OnPress", "wren_client_error_gen_close_btn_OnClose"}) {
        failAnEnrollment(trial, "internal_error");
        const std::string document = joined({"<vtguiEvent id=\"", event, "\"/>"});
        const Step closed = trial.event(document);
        expectEqual("the result of closing", closed.result, 0);
        expectEqual("notices of closing", closed.changed(), {"dispose wren_client_error_dialog"});
        expectEqual("the result of closing again", trial.event(document).result, -10);
    }
}

constexpr Check popupTable[] = {
    {"toasts.enroll", "A toast invites to enroll where the state has changed.", Through::Both,
     &invitesToEnroll},
    {"toasts.managed", "Nobody is invited who may not enroll.", Through::Both, &invitesNobodyElse},
    {"toasts.alert", "A new alert has a toast, an old one has none.", Through::Both, &toastsAnAlert},
    {"toasts.several-alerts", "Several alerts share one toast, fewer of them have none.", Through::Both,
     &toastsSeveralAlerts},
    {"toasts.verify", "A request to verify has a toast that leads to it.", Through::Both, &toastsARequest},
    {"toasts.empty", "An alert without a text for it has no toast.", Through::Both, &toastsNothingEmpty},
    {"toasts.shape", "A toast has its id, its severity and a bound button.", Through::Both, &shapesToasts},
    {"errors.layout", "The error popup has title, header, details and a button to close it.", Through::Both,
     &laysTheErrorOut},
    {"errors.history", "The error popup's texts go into the history.", Through::Both, &remembersTheError},
    {"errors.once", "An error that is on screen is not shown again.", Through::Both, &showsAnErrorOnce},
    {"errors.replaced", "Another error replaces the one on screen.", Through::Both, &replacesAnError},
    {"errors.closed", "Both its controls close the error popup, and go with it.", Through::Both,
     &closesAnError},
};

} // namespace

std::span<const Check> popupChecks() { return popupTable; }

} // namespace host::validate
