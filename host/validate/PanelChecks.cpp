// The two groups of the advanced window.
#include "host/validate/Check.h"
#include "host/validate/Documents.h"
#include "host/validate/ScreenLine.h"
#include "host/validate/Trial.h"

#include <algorithm>

namespace host::validate {
namespace {

std::string lineIn(const Step& step, std::string_view begin) {
    const Lines lines = step.changed();
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [&](const std::string& line) { return line.starts_with(begin); });
    return found == lines.end() ? std::string() : *found;
}

void expectPanels(const Step& step, std::string_view enrollment, std::string_view sync) {
    expectEqual("the enrollment group", lineIn(step, "adv-enrollment"), enrollment);
    expectEqual("the synchronization group", lineIn(step, "adv-sync"), sync);
}

/// "id: text" of every label and button.
Lines textsIn(const NoticeElement& notice) {
    Lines lines;
    for (const NoticeElement& element : notice.children) {
        const std::string_view text = element.attribute(element.name == "button" ? "label" : "value");
        lines.push_back(joined({element.attribute("id"), ": ", text}));
    }
    return lines;
}

void setsTheEnrollmentGroupUp(Trial& trial) {
    expectEqual("the group's texts", textsIn(trial.begin().notice("adv-enrollment setup")),
                {"quill_adv_enrollment_group_label: Wren Gate Enrollments:",
                 "quill_adv_enrollment_description_label: To unregister from the Wren Gate service, click "
                 "the Unenroll button. This will initiate the process of unregistering your account and "
                 "removing any associated configuration from the service.",
                 "quill_adv_unenroll_btn: Unenroll",
                 "quill_adv_unenroll_managed_label: This setting is managed by your administrator."});
}

void setsTheSyncGroupUp(Trial& trial) {
    expectEqual("the group's texts", textsIn(trial.begin().notice("adv-sync setup")),
                {"quill_config_sync_group_label: Configuration Synchronization:",
                 ("quill_config_sync_description_label: Sync your device to get the latest updates from your "
                  "organization."),
                 "quill_config_sync_last_sync_desc_label: Last successful sync:",
                 "quill_config_sync_last_sync_label: None", "quill_config_sync_btn: Sync now"});
}

void updatesWhatChangesAlone(Trial& trial) {
    trial.begin();
    const Step step = trial.status(enrolledDocument());
    expectEqual("the enrollment group's update", textsIn(step.notice("adv-enrollment update")),
                {"quill_adv_unenroll_btn: Unenroll",
                 "quill_adv_unenroll_managed_label: This setting is managed by your administrator."});
    const Lines sync = textsIn(step.notice("adv-sync update"));
    expectEqual("parts of the synchronization group's update", static_cast<std::int64_t>(sync.size()), 2);
}

void offersWhatAnEnrollmentAllows(Trial& trial) {
    trial.begin();
    const Step step = trial.status(enrolledDocument());
    expectEqual("the enrollment group", lineIn(step, "adv-enrollment"), "adv-enrollment update enabled");
    expectEqual("the synchronization group", lineIn(step, "adv-sync"),
                "adv-sync update enabled \"11/14/23 21:56:40\"");
}

void tellsWhoManages(Trial& trial) {
    trial.begin();
    expectEqual("the enrollment group",
                lineIn(trial.status(with(enrolledDocument(), "/enrollments/0/unenroll_allowed", false)),
                       "adv-enrollment"),
                "adv-enrollment update disabled managed");
    expectEqual(
        "the enrollment group",
        lineIn(trial.status(with(notEnrolledDocument(), "/enrollment_choices/0/enroll_allowed", false)),
               "adv-enrollment"),
        "adv-enrollment update disabled managed");
}

void offersNothingWithoutEnrollment(Trial& trial) {
    trial.begin();
    expectPanels(trial.status(notEnrolledDocument()), "adv-enrollment update disabled",
                 "adv-sync update disabled \"None\"");
}

void offersNothingInAnError(Trial& trial) {
    trial.begin();
    trial.status(enrolledDocument());
    expectPanels(trial.status(errorDocument("ipc_failure")), "adv-enrollment update disabled",
                 "adv-sync update disabled \"None\"");
}

void syncsWithAGoodCertificateOnly(Trial& trial) {
    trial.begin();
    const std::string_view place = "/enrollments/0/certificate_status/certificate_state";
    for (const char* state : {"expired", "revoked", "rejected"}) {
        expectEqual(joined({"the group with a certificate that is ", state}),
                    lineIn(trial.status(with(enrolledDocument(), place, state)), "adv-sync"),
                    "adv-sync update disabled \"None\"");
    }
    for (const char* state : {"ok", "unknown", "internal_error"}) {
        const std::string line = lineIn(trial.status(with(enrolledDocument(), place, state)), "adv-sync");
        expect(line.starts_with("adv-sync update enabled "),
               joined({"no synchronization with a certificate that is ", state}));
    }
}

void tellsThatItNeverSynced(Trial& trial) {
    trial.begin();
    expectEqual("the group",
                lineIn(trial.status(with(enrolledDocument(),
                                         "/enrollments/0/config_sync_status/last_config_sync_success", 0)),
                       "adv-sync"),
                "adv-sync update enabled \"None\"");
}

constexpr Check panelTable[] = {
    {"panels.enrollment-setup", "The enrollment group's setup holds its texts.", Through::Both,
     &setsTheEnrollmentGroupUp},
    {"panels.sync-setup", "The synchronization group's setup holds its texts.", Through::Both,
     &setsTheSyncGroupUp},
    {"panels.updates", "An update leaves out titles and descriptions.", Through::Both,
     &updatesWhatChangesAlone},
    {"panels.enrolled", "An enrollment may be ended and synchronized, its last time is told.", Through::Both,
     &offersWhatAnEnrollmentAllows},
    {"panels.managed", "Where the user may not end or begin an enrollment, the group says who may.",
     Through::Both, &tellsWhoManages},
    {"panels.not-enrolled", "Without an enrollment both buttons are disabled.", Through::Both,
     &offersNothingWithoutEnrollment},
    {"panels.error", "In an error both buttons are disabled.", Through::Both, &offersNothingInAnError},
    {"panels.certificate", "A certificate that is expired, revoked or rejected disables \"Sync now\".",
     Through::Both, &syncsWithAGoodCertificateOnly},
    {"panels.never-synced", "A synchronization that never succeeded shows \"None\", the button enabled.",
     Through::Both, &tellsThatItNeverSynced},
};

} // namespace

std::span<const Check> panelChecks() { return panelTable; }

} // namespace host::validate
