#include "presentation-plugin/tables/WrenAlertStringTable.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace {

struct AlertRow {
    WrenAlertId id;
    int number;
    int priority;
    const char* tile_message;
    const char* tile_title;
    const char* toast_title;
    const char* toast_message;
    const char* title;
    const char* short_message;
    const char* long_message;
    const char* action_label;
    const char* detail_title;
    const char* detail_description;
};

constexpr AlertRow alertRows[] = {
    {ALERT_UNEXPECTED, 0, 0, "Kestrel Suite error. Contact your IT help desk.", "Kestrel Suite error", "", "",
     "Kestrel Suite error", "Contact your IT help desk.",
     "Unexpected Kestrel Suite error, contact your IT help desk.", "", "", ""},
    {ALERT_IPC_FAILURE, 1, 0, "Kestrel Suite error. Contact your IT help desk.", "Kestrel Suite error", "",
     "", "Kestrel Suite error", "Try restarting your computer.",
     "Cannot communicate with the Kestrel Suite service. Try restarting your computer. If this problem "
     "persists, contact your IT help desk.",
     "", "", ""},
    {ALERT_NO_CHOICE, 2, 0, "Kestrel Suite error. Contact your IT help desk.", "Kestrel Suite error", "", "",
     "Kestrel Suite error", "Contact your IT help desk.",
     "No enrollment choice is available, contact your IT help desk.", "", "", ""},
    {ALERT_NOT_SINGLE_USER, 3, 0, "Multiple users logged into this device.", "Multiple users error", "", "",
     "Multiple users error", "Log out other users to continue.",
     "Multiple users are logged into this device. Log out other users to continue. If this problem persists, "
     "contact your IT help desk.",
     "", "", ""},
    {ALERT_NO_SERVICE, 4, 0, "Wren Gate service requires user approval.", "Wren Gate service error", "", "",
     "Wren Gate service error", "Enable Wren Gate app in System Settings.",
     "You need to enable the Norvane Kestrel Suite - Wren Gate app in System Settings. If this error "
     "persists, contact your IT help desk.",
     "", "", ""},
    {ALERT_GLOBAL_ERROR, 5, 0, "Kestrel Suite error. Contact your IT help desk.", "Kestrel Suite error", "",
     "", "Kestrel Suite error", "Contact your IT help desk.",
     "Unexpected Kestrel Suite error, contact your IT help desk.", "", "", ""},
    {ALERT_INTERCEPTOR, 6, 4, "Cannot communicate with the network interceptor component.",
     "Network interceptor error", "", "", "Network interceptor error", "",
     "Cannot communicate with the network interceptor component, contact your IT help desk.", "", "", ""},
    {ALERT_POSTURE, 7, 3, "Plover Desktop on your device is not responding. Contact your IT help desk.",
     "Plover Desktop error", "", "", "Plover Desktop error", "Try relaunching Plover Desktop App.",
     "Plover Desktop app on your device is not responding. Try to relaunch the application. If this error "
     "persists, contact your IT help desk.",
     "", "", ""},
    {ALERT_HW_KEY_STORE, 8, 5, "Error communicating with TPM on your device. Contact your IT help desk.",
     "TPM Error", "", "", "TPM Error", "",
     "Error communicating with Trusted Platform Module (TPM) on your device. Contact your IT help desk.", "",
     "", ""},
    {ALERT_CONFIG_SYNC, 9, 6, "Configuration sync error. Contact your IT help desk.",
     "Configuration sync error", "", "", "Configuration sync error", "",
     "You may not be able to access all of your organization's applications. Contact your IT help desk.", "",
     "", ""},
    {ALERT_SERVER_CONNECTIVITY, 10, 7, "Server connectivity error. Contact your IT help desk.",
     "Server connectivity error", "", "", "Server connectivity error", "",
     "Unable to communicate with server. You will not be able to access all of your organization's "
     "applications. Contact your IT help desk.",
     "", "", ""},
    {ALERT_REENROLL, 11, 1, "Verify your identity.", "Verify your identity", "Verify your identity",
     "Please verify your identity to renew your enrollment and continue access to secure resources.",
     "Verify your identity",
     "Please verify your identity to renew your enrollment and continue access to secure resources.",
     "Please verify your identity to renew your enrollment and continue access to secure resources. Click "
     "Continue to sign in and follow the authentication prompts.",
     "Continue", "Verify your identity", "Enrollment will continue in a new window."},
    {ALERT_REENROLL_EXPIRED, 12, 1, "Verify your identity.", "Verify your identity", "Verify your identity",
     "Please verify your identity to renew your expired enrollment and continue access to secure resources.",
     "Verify your identity",
     "Please verify your identity to renew your expired enrollment and continue access to secure resources.",
     "Please verify your identity to renew your expired enrollment and continue access to secure resources. "
     "Click Continue to sign in and follow the authentication prompts.",
     "Continue", "Verify your identity", "Enrollment will continue in a new window."},
    {ALERT_REENROLL_REVOKED, 13, 1, "Verify your identity.", "Verify your identity", "Verify your identity",
     "Please verify your identity to renew your suspended enrollment and continue access to secure "
     "resources.",
     "Verify your identity",
     "Please verify your identity to renew your suspended enrollment and continue access to secure "
     "resources.",
     "Please verify your identity to renew your suspended enrollment and continue access to secure "
     "resources. Click Continue to sign in and follow the authentication prompts.",
     "Continue", "Verify your identity", "Enrollment will continue in a new window."},
    {ALERT_DATAPLANE_AUTH, 14, 2, "Verify your identity to access corporate resources.",
     "Verify your identity", "Verify your identity",
     "Your organization requires you to verify your identity so that you can securely access corporate "
     "resources.",
     "Verify your identity",
     "Your organization requires you to verify your identity so that you can securely access corporate "
     "resources.",
     "Your organization requires you to verify your identity so that you can securely access corporate "
     "resources.",
     "Verify", "Verify your identity", "Authentication will continue in a new window."},
    {ALERT_DATAPLANE_POSTURE, 15, 8,
     "An issue is affecting secure resource access. Please review the provided details.", "Access blocked",
     "Access blocked", "Access to secure resource is blocked. Contact your IT help desk.", "Access blocked",
     "", "Access to secure resource is blocked. Contact your IT help desk.", "See Details", "", ""},
    {ALERT_DATAPLANE_POLICY, 16, 9,
     "An issue is affecting secure resource access. Please review the provided details.", "Access blocked",
     "Access blocked", "Access to secure resource is blocked. Contact your IT help desk.", "Access blocked",
     "", "Access to secure resource is blocked. Contact your IT help desk.", "See Details", "", ""},
    {ALERT_DATAPLANE_CONNECTIVITY, 17, 10,
     "An issue is affecting secure resource access. Please review the provided details.", "Access blocked",
     "Access blocked", "Access to secure resource is blocked. Contact your IT help desk.", "Access blocked",
     "", "Access to secure resource is blocked. Contact your IT help desk.", "See Details", "", ""},
};

TEST(WrenAlertStringTable, HoldsEveryTextOfEveryRow) {
    for (const AlertRow& row : alertRows) {
        SCOPED_TRACE(row.number);
        EXPECT_EQ(row.id, row.number);
        const WrenAlertStrings_t& entry = WrenAlertStringTable::GetEntry(row.id);
        EXPECT_EQ(entry.priority, row.priority);
        EXPECT_STREQ(entry.tile_message, row.tile_message);
        EXPECT_STREQ(entry.tile_title, row.tile_title);
        EXPECT_STREQ(entry.toast_title, row.toast_title);
        EXPECT_STREQ(entry.toast_message, row.toast_message);
        EXPECT_STREQ(entry.title, row.title);
        EXPECT_STREQ(entry.short_message, row.short_message);
        EXPECT_STREQ(entry.long_message, row.long_message);
        EXPECT_STREQ(entry.action_label, row.action_label);
        EXPECT_STREQ(entry.detail_title, row.detail_title);
        EXPECT_STREQ(entry.detail_description, row.detail_description);
    }
    EXPECT_EQ(std::size(alertRows), 18u);
}

TEST(WrenAlertStringTable, DataplaneRowsDifferInPriorityOnly) {
    const WrenAlertStrings_t& posture = WrenAlertStringTable::GetEntry(ALERT_DATAPLANE_POSTURE);
    EXPECT_EQ(posture.priority, 8);
    EXPECT_EQ(WrenAlertStringTable::GetEntry(ALERT_DATAPLANE_POLICY).priority, 9);
    EXPECT_EQ(WrenAlertStringTable::GetEntry(ALERT_DATAPLANE_CONNECTIVITY).priority, 10);
    for (const WrenAlertId id : {ALERT_DATAPLANE_POLICY, ALERT_DATAPLANE_CONNECTIVITY}) {
        const WrenAlertStrings_t& entry = WrenAlertStringTable::GetEntry(id);
        EXPECT_STREQ(entry.tile_message, posture.tile_message);
        EXPECT_STREQ(entry.tile_title, posture.tile_title);
        EXPECT_STREQ(entry.toast_title, posture.toast_title);
        EXPECT_STREQ(entry.toast_message, posture.toast_message);
        EXPECT_STREQ(entry.title, posture.title);
        EXPECT_STREQ(entry.short_message, posture.short_message);
        EXPECT_STREQ(entry.long_message, posture.long_message);
        EXPECT_STREQ(entry.action_label, posture.action_label);
        EXPECT_STREQ(entry.detail_title, posture.detail_title);
        EXPECT_STREQ(entry.detail_description, posture.detail_description);
    }
}

TEST(WrenAlertStringTable, IdsBeyondTheTableAreLoggedAndGetRowZero) {
    for (const int id : {18, 255}) {
        const test::LogCapture capture;
        EXPECT_EQ(&WrenAlertStringTable::GetEntry(static_cast<WrenAlertId>(id)),
                  &WrenAlertStringTable::GetEntry(ALERT_UNEXPECTED));
        const auto records = capture.records();
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].message, "Unexpected string table lookup with id=" + std::to_string(id));
        EXPECT_EQ(records[0].function, "WrenAlertStringTable::GetEntry");
    }
}

TEST(WrenAlertStringTable, IdsOfTheTableAreNotLogged) {
    const test::LogCapture capture;
    for (const AlertRow& row : alertRows) {
        static_cast<void>(WrenAlertStringTable::GetEntry(row.id));
    }
    EXPECT_TRUE(capture.records().empty());
}

} // namespace
