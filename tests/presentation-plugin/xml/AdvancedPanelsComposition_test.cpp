#include "presentation-plugin/xml/AdvancedPanelsComposition.h"

#include "common/PluginIdentity.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "tests/support/XmlTree.h"

#include <gtest/gtest.h>

namespace {

class AdvancedPanels : public testing::Test {
protected:
    std::string composed(UiNoticeType type, const AdvEnrollmentGroup& group) {
        XmlUINotice notice(type, nullptr, pluginIdentity::identity);
        composeAdvEnrollmentGroup(notice, group, events);
        return test::maskTimestamps(notice.serialize());
    }
    std::string composed(UiNoticeType type, const AdvConfigSyncGroup& group) {
        XmlUINotice notice(type, nullptr, pluginIdentity::identity);
        composeAdvConfigSyncGroup(notice, group, events);
        return test::maskTimestamps(notice.serialize());
    }

    CEventStore events;
};

constexpr const char* updateRoot =
    "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"update\" timestamp=\"*\">\n";
constexpr const char* setupRoot =
    "<vtguiNotice module=\"com.norvane.vantor.presentation.quill\" type=\"setup\" timestamp=\"*\">\n";

std::string enrollmentUpdate(const char* buttonDisabled, const char* managedHidden) {
    return std::string(updateRoot) +
           "\t<button id=\"quill_adv_unenroll_btn\" label=\"Unenroll\" tooltip=\"Unenroll\" hidden=\"false\" "
           "disabled=\"" +
           buttonDisabled +
           "\"/>\n"
           "\t<label id=\"quill_adv_unenroll_managed_label\" value=\"This setting is managed by your "
           "administrator.\" "
           "tooltip=\"This setting is managed by your administrator.\" color=\"black\" hidden=\"" +
           managedHidden + "\" disabled=\"false\"/>\n</vtguiNotice>\n";
}

std::string configSyncUpdate(const std::string& lastSync, const char* buttonDisabled) {
    return std::string(updateRoot) + "\t<label id=\"quill_config_sync_last_sync_label\" value=\"" + lastSync +
           "\" tooltip=\"" + lastSync +
           "\" color=\"black\" hidden=\"false\" disabled=\"false\"/>\n"
           "\t<button id=\"quill_config_sync_btn\" label=\"Sync now\" tooltip=\"Sync now\" hidden=\"false\" "
           "disabled=\"" +
           buttonDisabled + "\"/>\n</vtguiNotice>\n";
}

TEST_F(AdvancedPanels, EnrollmentSetupHoldsAllTextsAndBindsTheButton) {
    EXPECT_EQ(
        composed(UiNoticeType::Setup, advEnrollmentSetup()),
        std::string(setupRoot) +
            "\t<label id=\"quill_adv_enrollment_group_label\" value=\"Wren Gate Enrollments:\" "
            "tooltip=\"Wren "
            "Gate Enrollments:\" color=\"black\" hidden=\"false\" disabled=\"false\"/>\n"
            "\t<label id=\"quill_adv_enrollment_description_label\" value=\"To unregister from the Wren Gate "
            "service, click the Unenroll button. This will initiate the process of unregistering your "
            "account "
            "and removing any associated configuration from the service.\" tooltip=\"To unregister from the "
            "Wren Gate service, click the Unenroll button. This will initiate the process of unregistering "
            "your account and removing any associated configuration from the service.\" color=\"black\" "
            "hidden=\"false\" disabled=\"false\"/>\n"
            "\t<button id=\"quill_adv_unenroll_btn\" label=\"Unenroll\" tooltip=\"Unenroll\" "
            "hidden=\"false\" "
            "disabled=\"true\" OnPress=\"quill_adv_unenroll_btn_OnPress\"/>\n"
            "\t<label id=\"quill_adv_unenroll_managed_label\" value=\"This setting is managed by your "
            "administrator.\" tooltip=\"This setting is managed by your administrator.\" color=\"black\" "
            "hidden=\"true\" disabled=\"false\"/>\n"
            "</vtguiNotice>\n");
    EXPECT_EQ(events.Lookup("quill_adv_unenroll_btn_OnPress"), EventStoreId::UNENROLL_ACTION);
}

TEST_F(AdvancedPanels, ConfigSyncSetupHoldsAllTextsAndBindsTheButton) {
    EXPECT_EQ(
        composed(UiNoticeType::Setup, advConfigSyncSetup()),
        std::string(setupRoot) +
            "\t<label id=\"quill_config_sync_group_label\" value=\"Configuration Synchronization:\" "
            "tooltip=\"Configuration Synchronization:\" color=\"black\" hidden=\"false\" "
            "disabled=\"false\"/>\n"
            "\t<label id=\"quill_config_sync_description_label\" value=\"Sync your device to get the latest "
            "updates from your organization.\" tooltip=\"Sync your device to get the latest updates from "
            "your "
            "organization.\" color=\"black\" hidden=\"false\" disabled=\"false\"/>\n"
            "\t<label id=\"quill_config_sync_last_sync_desc_label\" value=\"Last successful sync:\" "
            "tooltip=\"Last successful sync:\" color=\"black\" hidden=\"false\" disabled=\"false\"/>\n"
            "\t<label id=\"quill_config_sync_last_sync_label\" value=\"None\" tooltip=\"None\" "
            "color=\"black\" "
            "hidden=\"false\" disabled=\"false\"/>\n"
            "\t<button id=\"quill_config_sync_btn\" label=\"Sync now\" tooltip=\"Sync now\" hidden=\"false\" "
            "disabled=\"true\" OnPress=\"quill_config_sync_btn_OnPress\"/>\n"
            "</vtguiNotice>\n");
    EXPECT_EQ(events.Lookup("quill_config_sync_btn_OnPress"), EventStoreId::CONFIG_SYNC_ACTION);
}

TEST_F(AdvancedPanels, EnrolledAndAllowedOffersTheButton) {
    EXPECT_EQ(composed(UiNoticeType::Update, advEnrollmentActive(false)), enrollmentUpdate("false", "true"));
}

TEST_F(AdvancedPanels, EnrolledAndNotAllowedDisablesTheButtonAndTellsWhy) {
    EXPECT_EQ(composed(UiNoticeType::Update, advEnrollmentActive(true)), enrollmentUpdate("true", "false"));
}

TEST_F(AdvancedPanels, WithoutEnrollmentTheButtonIsDisabled) {
    EXPECT_EQ(composed(UiNoticeType::Update, advEnrollmentInactive(false)), enrollmentUpdate("true", "true"));
    EXPECT_EQ(composed(UiNoticeType::Update, advEnrollmentInactive(true)), enrollmentUpdate("true", "false"));
}

TEST_F(AdvancedPanels, ConfigSyncActiveOffersTheButton) {
    EXPECT_EQ(composed(UiNoticeType::Update, advConfigSyncActive("01/02/24 03:04:05")),
              configSyncUpdate("01/02/24 03:04:05", "false"));
}

TEST_F(AdvancedPanels, ConfigSyncInactiveShowsNoneAndDisablesTheButton) {
    EXPECT_EQ(composed(UiNoticeType::Update, advConfigSyncInactive()), configSyncUpdate("None", "true"));
}

TEST_F(AdvancedPanels, UpdatesBindNothing) {
    composed(UiNoticeType::Update, advEnrollmentActive(false));
    composed(UiNoticeType::Update, advConfigSyncInactive());
    EXPECT_EQ(events.Lookup("quill_adv_unenroll_btn_OnPress"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(events.Lookup("quill_config_sync_btn_OnPress"), EventStoreId::EVENT_INVALID);
}

TEST_F(AdvancedPanels, AnEmptyTextLeavesItsControlOut) {
    EXPECT_EQ(composed(UiNoticeType::Setup, AdvEnrollmentGroup{}),
              composed(UiNoticeType::Setup, AdvConfigSyncGroup{}));
    EXPECT_EQ(events.Lookup("quill_adv_unenroll_btn_OnPress"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(events.Lookup("quill_config_sync_btn_OnPress"), EventStoreId::EVENT_INVALID);
    EXPECT_EQ(composed(UiNoticeType::Update, AdvConfigSyncGroup{.lastSync = "never"}),
              std::string(updateRoot) + "\t<label id=\"quill_config_sync_last_sync_label\" value=\"never\" "
                                        "tooltip=\"never\" color=\"black\" hidden=\"false\" "
                                        "disabled=\"false\"/>\n</vtguiNotice>\n");
}

} // namespace
