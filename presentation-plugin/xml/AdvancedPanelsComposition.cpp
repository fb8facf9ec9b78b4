#include "presentation-plugin/xml/AdvancedPanelsComposition.h"

#include "presentation-plugin/xml/CEventStore.h"
#include "xml/UiNoticeHelpers.h"

namespace {

constexpr const char* unenrollText = "Unenroll";
constexpr const char* managedByAdministrator = "This setting is managed by your administrator.";
constexpr const char* syncText = "Sync now";
constexpr const char* neverSynced = "None";

void addPanelLabel(XmlUINotice& notice, const char* id, const char* text, bool hidden = false) {
    if (*text) {
        addLabel(notice, id, text, text, hidden, false, "black");
    }
}

void addPanelButton(XmlUINotice& notice, const char* id, const char* text, bool hidden, bool disabled,
                    EventStoreId event, CEventStore& events) {
    if (!*text) {
        return;
    }
    XmlUICtrl button = addButton(notice, id, text, hidden, disabled);
    if (notice.getType() == UiNoticeType::Setup) {
        events.Add(button.setEvent(UiCtrlEvent::OnPress, nullptr), event, nullptr);
    }
}

} // namespace

void composeAdvEnrollmentGroup(XmlUINotice& notice, const AdvEnrollmentGroup& group, CEventStore& events) {
    addPanelLabel(notice, "quill_adv_enrollment_group_label", group.title);
    addPanelLabel(notice, "quill_adv_enrollment_description_label", group.description);
    addPanelButton(notice, "quill_adv_unenroll_btn", group.buttonText, group.buttonHidden,
                   group.buttonDisabled, EventStoreId::UNENROLL_ACTION, events);
    addPanelLabel(notice, "quill_adv_unenroll_managed_label", group.managedText, group.managedHidden);
}

void composeAdvConfigSyncGroup(XmlUINotice& notice, const AdvConfigSyncGroup& group, CEventStore& events) {
    addPanelLabel(notice, "quill_config_sync_group_label", group.title);
    addPanelLabel(notice, "quill_config_sync_description_label", group.description);
    addPanelLabel(notice, "quill_config_sync_last_sync_desc_label", group.lastSyncDescription);
    addPanelLabel(notice, "quill_config_sync_last_sync_label", group.lastSync);
    addPanelButton(notice, "quill_config_sync_btn", group.buttonText, group.buttonHidden,
                   group.buttonDisabled, EventStoreId::CONFIG_SYNC_ACTION, events);
}

AdvEnrollmentGroup advEnrollmentSetup() {
    return {.title = "Wren Gate Enrollments:",
            .description =
                "To unregister from the Wren Gate service, click the Unenroll button. This will initiate "
                "the process of unregistering your account and removing any associated configuration "
                "from the service.",
            .buttonText = unenrollText,
            .managedText = managedByAdministrator,
            .buttonDisabled = true,
            .managedHidden = true};
}

AdvConfigSyncGroup advConfigSyncSetup() {
    return {.title = "Configuration Synchronization:",
            .description = "Sync your device to get the latest updates from your organization.",
            .lastSyncDescription = "Last successful sync:",
            .lastSync = neverSynced,
            .buttonText = syncText,
            .buttonDisabled = true};
}

AdvEnrollmentGroup advEnrollmentActive(bool notAllowed) {
    return {.buttonText = unenrollText,
            .managedText = managedByAdministrator,
            .buttonDisabled = notAllowed,
            .managedHidden = !notAllowed};
}

AdvEnrollmentGroup advEnrollmentInactive(bool managed) {
    return {.buttonText = unenrollText,
            .managedText = managedByAdministrator,
            .buttonDisabled = true,
            .managedHidden = !managed};
}

AdvConfigSyncGroup advConfigSyncActive(const char* lastSync) {
    return {.lastSync = lastSync, .buttonText = syncText, .buttonDisabled = false};
}

AdvConfigSyncGroup advConfigSyncInactive() {
    return {.lastSync = neverSynced, .buttonText = syncText, .buttonDisabled = true};
}
