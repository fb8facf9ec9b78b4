// What the tile says.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

#include <algorithm>
#include <array>

namespace host::validate {
namespace {

namespace json = boost::json;

/// The first tile that a step draws; empty where it draws none.
std::string tileIn(const Step& step) {
    const Lines lines = step.changed();
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [](const std::string& line) { return line.starts_with("tile "); });
    return found == lines.end() ? std::string() : *found;
}

void expectTile(const Step& step, std::string_view wanted) { expectEqual("the tile", tileIn(step), wanted); }

void laysTheTileOut(Trial& trial) {
    const NoticeElement tile = trial.begin().notice("tile setup ");
    Lines elements;
    for (const NoticeElement& element : tile.children) {
        std::string line = element.name;
        for (const auto& [name, value] : element.attributes) {
            line.append(" ").append(name).append("=").append(value);
        }
        elements.push_back(std::move(line));
    }
    const auto button = [](std::string_view id, std::string_view text) {
        return joined({"button id=", id, " label=", text, " tooltip=", text,
                       " hidden=true disabled=true OnPress=", id, "_OnPress"});
    };
    expectEqual(
        "the tile's elements", elements,
        {("label id=simple_tile_label value=Wren Gate tooltip=Navigate to WREN Advanced Window "
          "color=black hidden=false disabled=false"),
         ("label id=simple_status value=Initializing. Please wait... tooltip= color=black "
          "hidden=false disabled=false"),
         "log messagehistory=Initializing. Please wait...", button("quill_tile_enroll_action_btn", "Enroll"),
         button("quill_tile_cancel_action_btn", "Cancel"), button("quill_tile_details_action_btn", "Details"),
         button("quill_tile_verify_action_btn", "Verify"),
         "traystate id=tray_state_string value=Initializing. Please wait..."});
}

void saysActive(Trial& trial) {
    trial.begin();
    expectTile(trial.status(enrolledDocument()), "tile update Good \"Wren Gate is active.\" \"Active\" []");
}

void asksToRegister(Trial& trial) {
    trial.begin();
    expectTile(trial.status(notEnrolledDocument()),
               "tile update Attention \"Registration is required to access secure resources.\" "
               "\"Registration required\" [Enroll]");
}

void leavesRegistrationToOthers(Trial& trial) {
    trial.begin();
    expectTile(trial.status(with(notEnrolledDocument(), "/enrollment_choices/0/enroll_allowed", false)),
               "tile update Attention \"Registration is being managed by your administrator to access "
               "secure resources.\" \"Registration managed\" []");
}

void cannotBegin(Trial& trial) {
    trial.begin();
    expectTile(trial.status(with(notEnrolledDocument(), "/posture_connectivity", "unreachable")),
               "tile update Attention \"Cannot begin enrollment. Contact your IT help desk.\" "
               "\"Cannot begin enrollment. Contact your IT help desk.\" [Details]");
}

void tellsOneAlert(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectTile(trial.dataplane(dataplaneDocument(1, 0)),
               "tile update Attention \"Tile 1\" \"Access blocked\" [Details]");
}

void tellsOfSeveralAlerts(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectTile(trial.dataplane(dataplaneDocument(2, 0)),
               "tile update Attention \"Some issues may be affecting secure resource access. Please review "
               "the provided details.\" \"Alerts available\" [Details]");
}

void asksToVerify(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectTile(trial.dataplane(dataplaneDocument(0, 1)),
               "tile update Attention \"Verify your identity to access corporate resources.\" "
               "\"Verify your identity\" [Verify]");
}

void asksToRenew(Trial& trial) {
    trial.begin();
    for (const char* state : {"expired", "revoked", "rejected"}) {
        const Step step = trial.status(
            with(enrolledDocument(), "/enrollments/0/certificate_status/certificate_state", state));
        expectTile(step,
                   "tile update Attention \"Verify your identity.\" \"Verify your identity\" [Details]");
        trial.status(enrolledDocument());
    }
}

struct GlobalError {
    std::string_view substate;
    std::string_view message;
    std::string_view title;
};
constexpr std::string_view suiteError = "Kestrel Suite error. Contact your IT help desk.";
constexpr std::array globalErrors{
    GlobalError{"ipc_failure", suiteError, "Kestrel Suite error"},
    GlobalError{"no_choice", suiteError, "Kestrel Suite error"},
    GlobalError{"not_single_user", "Multiple users logged into this device.", "Multiple users error"},
    GlobalError{"no_service", "Wren Gate service requires user approval.", "Wren Gate service error"},
    GlobalError{"", suiteError, "Kestrel Suite error"},
    GlobalError{"No_Service", suiteError, "Kestrel Suite error"},
};

void tellsGlobalErrors(Trial& trial) {
    trial.begin();
    for (const GlobalError& error : globalErrors) {
        trial.status(enrolledDocument());
        expectTile(trial.status(errorDocument(error.substate)),
                   joined({"tile update Error \"", error.message, "\" \"", error.title, "\" [Details]"}));
    }
}

void readsTheServiceStatus(Trial& trial) {
    trial.begin();
    json::value document = errorDocument("other");
    document.as_object()["service_status"] = "notice";
    expectTile(trial.status(document), "tile update Error \"Wren Gate service requires user approval.\" "
                                       "\"Wren Gate service error\" [Details]");
    document.as_object()["service_status"] = "pending";
    expectTile(trial.status(document),
               joined({"tile update Error \"", suiteError, "\" \"Kestrel Suite error\" [Details]"}));
}

void recoversFromAnError(Trial& trial) {
    trial.begin();
    trial.status(errorDocument("ipc_failure"));
    expectTile(trial.status(enrolledDocument()), "tile update Good \"Wren Gate is active.\" \"Active\" []");
}

void setsUpAnew(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("notices of state \"init\"", trial.status(initDocument()).shown(),
                {"stats-overview update", "stats-details update",
                 "tile setup Transition \"Initializing. Please wait...\" \"Initializing. Please wait...\" []",
                 "adv-enrollment setup disabled", "adv-sync setup disabled \"None\"", "stats-overview setup",
                 "stats-details setup"});
}

void passesUnknownStatesBy(Trial& trial) {
    trial.begin();
    for (const char* state : {"", "Active", "inactive_tnd", "errors"}) {
        expectEqual(joined({"notices of state \"", state, "\""}),
                    trial.status(with(notEnrolledDocument(), "/state", state)).shown(),
                    {"stats-overview update", "stats-details update"});
    }
}

void passesContradictionsBy(Trial& trial) {
    trial.begin();
    json::value both = enrolledDocument();
    both.as_object()["enrollment_choices"] = notEnrolledDocument().at("enrollment_choices");
    expectEqual("notices of a status with enrollment and choice", trial.status(both).changed(), {});
    const json::value none = with(enrolledDocument(), "/enrollments", json::array());
    expectEqual("notices of a status with neither", trial.status(none).changed(), {});
}

void drawsChangesOnly(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectEqual("notices of the same status again", trial.status(enrolledDocument()).shown(), {});
    trial.dataplane(dataplaneDocument(1, 0));
    expectEqual("notices of the same alerts again", trial.dataplane(dataplaneDocument(1, 0)).shown(), {});
    expect(!tileIn(trial.status(with(enrolledDocument(), "/substate", "x"))).empty(),
           "a status that differs in one word draws no tile");
}

void seesAnotherOrder(Trial& trial) {
    trial.begin();
    json::value document = enrolledDocument();
    json::array& enrollments = document.as_object()["enrollments"].as_array();
    enrollments.push_back(enrollments[0]);
    enrollments[1].as_object()["id"] = "enrollment-2";
    trial.status(document);
    std::swap(enrollments[0], enrollments[1]);
    expect(!tileIn(trial.status(document)).empty(), "the same enrollments in another order draw no tile");
}

void keepsTheHistory(Trial& trial) {
    trial.begin();
    const NoticeElement changed = trial.status(enrolledDocument()).notice("tile ");
    const NoticeElement* line = changed.child("log");
    expectEqual("the history of a new status line", line != nullptr ? line->attribute("messagehistory") : "",
                "Wren Gate is active.");
    const NoticeElement same = trial.status(with(enrolledDocument(), "/substate", "x")).notice("tile ");
    expect(same.child("log") == nullptr, "a status line that stays goes into the history again");
    trial.status(notEnrolledDocument());
    trial.status(enrolledDocument());
    const Step blank =
        trial.dataplane(with(dataplaneDocument(1, 0), "/dataplane_alerts/0/tile_message", "  "));
    expect(blank.notice("tile ").child("log") == nullptr, "a line of blanks goes into the history");
}

constexpr Check tileTable[] = {
    {"tile.layout", "The tile's setup holds its elements with their attributes, in order.", Through::Both,
     &laysTheTileOut},
    {"tile.active", "Enrolled and well: the tile says so and offers nothing.", Through::Both, &saysActive},
    {"tile.registration", "Not enrolled: the tile offers to enroll.", Through::Both, &asksToRegister},
    {"tile.managed", "Not enrolled and not allowed to: the tile offers nothing.", Through::Both,
     &leavesRegistrationToOthers},
    {"tile.cannot-begin", "Not enrolled with trouble: the tile offers details.", Through::Both, &cannotBegin},
    {"tile.one-alert", "One alert: the tile tells its message and offers details.", Through::Both,
     &tellsOneAlert},
    {"tile.several-alerts", "Several alerts: the tile says so and offers details.", Through::Both,
     &tellsOfSeveralAlerts},
    {"tile.verify", "A request to verify: the tile offers that.", Through::Both, &asksToVerify},
    {"tile.renewal", "A certificate that is no good: the tile asks to verify by the details.", Through::Both,
     &asksToRenew},
    {"tile.errors", "State \"error\": the tile tells what its substate stands for.", Through::Both,
     &tellsGlobalErrors},
    {"tile.service-status", "State \"error\" with service status \"notice\" asks for the user's approval.",
     Through::Both, &readsTheServiceStatus},
    {"tile.recovery", "The next good status ends an error.", Through::Both, &recoversFromAnError},
    {"tile.init", "State \"init\" sets everything up anew.", Through::Both, &setsUpAnew},
    {"tile.unknown-state", "A state that the plugin does not know draws statistics alone.", Through::Both,
     &passesUnknownStatesBy},
    {"tile.contradiction", "Both enrollments and choices, or neither, draw statistics alone.", Through::Both,
     &passesContradictionsBy},
    {"tile.changes-only", "A document that says what the last one said draws nothing.", Through::Both,
     &drawsChangesOnly},
    {"tile.list-order", "Another order of a list is a change.", Through::Both, &seesAnotherOrder},
    {"tile.history", "A status line goes into the history where it is new and not blank.", Through::Both,
     &keepsTheHistory},
};

} // namespace

std::span<const Check> tileChecks() { return tileTable; }

} // namespace host::validate
