// Event documents: what is one, what is none, and what the host's log hears of them.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

#include <array>

namespace host::validate {
namespace {

constexpr std::string_view detailsEvent = "quill_tile_details_action_btn_OnPress";

void expectNoEvent(Trial& trial, std::string_view xml) {
    const Step step = trial.event(xml);
    expectEqual(joined({"the result of ", xml.substr(0, 60)}), step.result, -10);
    expectEqual(joined({"notices of ", xml.substr(0, 60)}), step.screens(), {});
}

void refusesNull(Trial& trial) {
    trial.begin();
    const Step step = trial.step([&] { return trial.plugin().EventNotification(nullptr); });
    expectEqual("the result", step.result, -10);
    expectEqual("notices", step.screens(), {});
}

void refusesWhatIsNoXml(Trial& trial) {
    trial.begin();
    for (const char* xml : {"", " ", "no xml", "<", "<vtguiEvent", "<vtguiEvent id=\"x\"",
                            "<vtguiEvent id=x/>", "<vtguiEvent id=\"x/>", "<vtguiEvent id=\"x\">",
                            "\xff\xfe\x01", "<?xml", "<!--", "<![CDATA[", "&amp;"}) {
        expectNoEvent(trial, xml);
    }
}

void refusesOtherRoots(Trial& trial) {
    trial.begin();
    for (const char* root : {"vtguiNotice", "vtguievent", "VtguiEvent", "vtguiEvents", "event"}) {
        expectNoEvent(trial, joined({"<", root, " id=\"", detailsEvent, "\"/>"}));
        expectNoEvent(trial, joined({"<", root, "><vtguiEvent id=\"", detailsEvent, "\"/></", root, ">"}));
    }
}

void refusesNoId(Trial& trial) {
    trial.begin();
    for (const char* xml : {"<vtguiEvent/>", "<vtguiEvent id=\"\"/>", "<vtguiEvent ID=\"x\"/>",
                            "<vtguiEvent><button id=\"x\"/></vtguiEvent>"}) {
        expectNoEvent(trial, xml);
    }
}

void refusesDepth(Trial& trial) {
    trial.begin();
    std::string tags = joined({"<vtguiEvent id=\"", detailsEvent, "\">"});
    constexpr std::size_t levels = 100'000;
    for (std::size_t level = 0; level < levels; ++level) {
        tags.append("<a>");
    }
    std::string closed = tags;
    for (std::size_t level = 0; level < levels; ++level) {
        closed.append("</a>");
    }
    closed.append("</vtguiEvent>");
    expectNoEvent(trial, tags);
    expectNoEvent(trial, closed);
}

Lines loggedEvent(const Step& step) {
    const NoticeElement notice = step.notice("apilog eventnotification");
    const NoticeElement& event = notice.children.at(0);
    return {std::string(event.attribute("id")), std::string(event.attribute("eventstore_id"))};
}

void refusesUnknownIds(Trial& trial) {
    trial.begin();
    for (const char* id : {"nobody", "simple_status", "quill_tile_enroll_action_btn",
                           "quill_tile_enroll_action_btn_onpress", "quill_tile_enroll_action_btn_OnPress "}) {
        const Step step = trial.event(joined({"<vtguiEvent id=\"", id, "\"/>"}));
        expectEqual(joined({"the result of ", id}), step.result, -10);
        expectEqual("what the host's log hears", loggedEvent(step), {id, "EVENT_INVALID"});
        expectEqual("notices beside that", step.shown(), {});
    }
}

/// The main screen's controls, and what each stands for.
constexpr std::array<std::array<std::string_view, 2>, 6> mainControls{{
    {"quill_tile_enroll_action_btn", "ENROLL_ACTION"},
    {"quill_tile_cancel_action_btn", "ENROLL_CANCEL_ACTION"},
    {"quill_tile_details_action_btn", "ERROR_DETAILS_ACTION"},
    {"quill_tile_verify_action_btn", "AUTH_VERIFY_ACTION"},
    {"quill_adv_unenroll_btn", "UNENROLL_ACTION"},
    {"quill_config_sync_btn", "CONFIG_SYNC_ACTION"},
}};

void knowsItsControls(Trial& trial) {
    for (const auto& [control, kind] : mainControls) {
        trial.begin();
        const Step step = trial.press(control);
        expectEqual(joined({"the result of ", control}), step.result, 0);
        expectEqual("what the host's log hears", loggedEvent(step),
                    {joined({control, "_OnPress"}), std::string(kind)});
        expectEqual("the first notice", lineAt(step.screens(), 0), "apilog eventnotification");
    }
}

void knowsItsBrowsers(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    trial.enrollment("started");
    trial.login();
    for (const auto& [event, kind] :
         {std::pair("quill_enrollment_browser_web_control_OnError", "ENROLLMENT_BROWSER_ERROR"),
          std::pair("quill_enrollment_browser_close_btn_OnClose", "ENROLLMENT_BROWSER_CLOSE")}) {
        expectEqual("what the host's log hears",
                    loggedEvent(trial.event(joined({"<vtguiEvent id=\"", event, "\"/>"}))), {event, kind});
    }
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(0, 1));
    trial.press("quill_tile_verify_action_toast_btn");
    trial.press("quill_tile_details_action_btn");
    for (const auto& [event, kind] :
         {std::pair("quill_alert_browser_web_control_OnBrowseEvent", "LOCAL_BROWSE_EVENT"),
          std::pair("quill_alert_browser_web_control_OnError", "ALERT_BROWSER_ERROR"),
          std::pair("quill_dataplane_auth_browser_web_control_OnPress",
                    "DATAPLANE_AUTH_BROWSER_END_URL_REACHED")}) {
        expectEqual("what the host's log hears",
                    loggedEvent(trial.event(joined({"<vtguiEvent id=\"", event, "\"/>"}))), {event, kind});
    }
}

void keepsItsControls(Trial& trial) {
    trial.begin();
    trial.status(notEnrolledDocument()); // its toast binds a button for good
    trial.status(enrolledDocument());
    const Step late = trial.press("quill_toast_enroll_action_btn");
    expectEqual("the result of a toast that is gone", late.result, 0);
    expectEqual("its kind", lineAt(loggedEvent(late), 1), "ENROLL_TOAST_ACTION");
}

void forgetsDialogs(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    trial.dataplane(dataplaneDocument(1, 0));
    trial.press("quill_tile_details_action_btn");
    const std::string_view close = "<vtguiEvent id=\"quill_alert_browser_close_btn_OnClose\"/>";
    expectEqual("the result of closing", trial.event(close).result, 0);
    const Step late = trial.event(close);
    expectEqual("the result of closing again", late.result, -10);
    expectEqual("its kind", lineAt(loggedEvent(late), 1), "EVENT_INVALID");
}

/// What the backend gets for an event of the login's browser with these children.
Lines replyTo(Trial& trial, std::string_view children) {
    trial.begin();
    trial.status(notEnrolledDocument());
    trial.press("quill_tile_enroll_action_btn");
    trial.enrollment("started");
    trial.login();
    return trial.event(joined({"<vtguiEvent id=\"", loginControl, "_OnPress\">", children, "</vtguiEvent>"}))
        .requests();
}

Lines replyWith(std::string_view cookie) {
    return {joined({R"(EnrollmentAuthReply {"version":"1","enrollment_id":"enrollment-1",)",
                    R"("enrollment_cookie":")", cookie, R"("})"})};
}

std::string browserWith(std::string_view cookie) {
    return joined({"<webbrowser id=\"", loginControl, "\" value=\"", cookie, "\"/>"});
}

void readsValues(Trial& trial) {
    expectEqual("requests", replyTo(trial, browserWith("secret")), replyWith("secret"));
    expectEqual("requests of an escaped value", replyTo(trial, browserWith("&lt;&amp;&#65;&#x42;&apos;")),
                replyWith("<&AB'"));
}

void findsControlsAnywhere(Trial& trial) {
    expectEqual("requests where the control stands deeper",
                replyTo(trial, joined({"<a><b c=\"d\">text", browserWith("deep"), "</b></a>"})),
                replyWith("deep"));
    expectEqual("requests where the element has another name",
                replyTo(trial, joined({"<thing id=\"", loginControl, "\" value=\"odd\"/>"})),
                replyWith("odd"));
}

void takesTheLaterControl(Trial& trial) {
    expectEqual("requests where two controls have the id",
                replyTo(trial, joined({browserWith("first"), browserWith("second")})), replyWith("second"));
}

void takesAMissingValueAsEmpty(Trial& trial) {
    expectEqual("requests without the control", replyTo(trial, ""), replyWith(""));
    expectEqual("requests without the value",
                replyTo(trial, joined({"<webbrowser id=\"", loginControl, "\"/>"})), replyWith(""));
    expectEqual("requests with another control's value",
                replyTo(trial, "<webbrowser id=\"other\" value=\"x\"/>"), replyWith(""));
}

void takesGreatValues(Trial& trial) {
    const std::string cookie(1'000'000, 'c');
    expect(replyTo(trial, browserWith(cookie)) == replyWith(cookie), "a great value arrives otherwise");
}

constexpr Check eventTable[] = {
    {"events.null", "A null document is refused with -10.", Through::Both, &refusesNull},
    {"events.malformed", "What is no XML is refused with -10 and told to nobody.", Through::Both,
     &refusesWhatIsNoXml},
    {"events.root", "A document with another root is refused with -10.", Through::Both, &refusesOtherRoots},
    {"events.no-id", "A document without an id is refused with -10.", Through::Both, &refusesNoId},
    {"events.depth", "A document of 100,000 levels is refused and does no harm.", Through::Both,
     &refusesDepth},
    {"events.unknown-id", "An unknown id goes to the host's log and is refused with -10.", Through::Both,
     &refusesUnknownIds},
    {"events.controls", "Every button of the main screen is known, and told to the host's log first.",
     Through::Both, &knowsItsControls},
    {"events.browsers", "Every event of an open browser is known.", Through::Both, &knowsItsBrowsers},
    {"events.late-toast", "A toast's button stays known when the toast is gone.", Through::Both,
     &keepsItsControls},
    {"events.late-dialog", "A dialog's controls are forgotten when it closes.", Through::Both,
     &forgetsDialogs},
    {"events.values", "A control's value is read, its entities resolved.", Through::Both, &readsValues},
    {"events.anywhere", "A control is found at any depth and under any element name.", Through::Both,
     &findsControlsAnywhere},
    {"events.later-control", "Of two controls with one id the later counts.", Through::Both,
     &takesTheLaterControl},
    {"events.missing-value", "A value that is missing is an empty one.", Through::Both,
     &takesAMissingValueAsEmpty},
    {"events.great-value", "A value of a megabyte arrives whole.", Through::Both, &takesGreatValues},
};

} // namespace

std::span<const Check> eventChecks() { return eventTable; }

} // namespace host::validate
