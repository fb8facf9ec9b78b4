#include "presentation-plugin/tables/WrenAlertStringTable.h"

#include "presentation-plugin/tables/StringTableLookup.h"

#include <array>

namespace {

constexpr std::array<WrenAlertStrings_t, 18> alertStrings{{
    // ALERT_UNEXPECTED
    {.priority = 0,
     .tile_message = "Kestrel Suite error. Contact your IT help desk.",
     .tile_title = "Kestrel Suite error",
     .title = "Kestrel Suite error",
     .short_message = "Contact your IT help desk.",
     .long_message = "Unexpected Kestrel Suite error, contact your IT help desk."},
    // ALERT_IPC_FAILURE
    {.priority = 0,
     .tile_message = "Kestrel Suite error. Contact your IT help desk.",
     .tile_title = "Kestrel Suite error",
     .title = "Kestrel Suite error",
     .short_message = "Try restarting your computer.",
     .long_message = "Cannot communicate with the Kestrel Suite service. Try restarting your computer. If "
                     "this problem persists, contact your IT help desk."},
    // ALERT_NO_CHOICE
    {.priority = 0,
     .tile_message = "Kestrel Suite error. Contact your IT help desk.",
     .tile_title = "Kestrel Suite error",
     .title = "Kestrel Suite error",
     .short_message = "Contact your IT help desk.",
     .long_message = "No enrollment choice is available, contact your IT help desk."},
    // ALERT_NOT_SINGLE_USER
    {.priority = 0,
     .tile_message = "Multiple users logged into this device.",
     .tile_title = "Multiple users error",
     .title = "Multiple users error",
     .short_message = "Log out other users to continue.",
     .long_message = "Multiple users are logged into this device. Log out other users to continue. If this "
                     "problem persists, contact your IT help desk."},
    // ALERT_NO_SERVICE
    {.priority = 0,
     .tile_message = "Wren Gate service requires user approval.",
     .tile_title = "Wren Gate service error",
     .title = "Wren Gate service error",
     .short_message = "Enable Wren Gate app in System Settings.",
     .long_message = "You need to enable the Norvane Kestrel Suite - Wren Gate app in System Settings. If "
                     "this error persists, contact your IT help desk."},
    // ALERT_GLOBAL_ERROR
    {.priority = 0,
     .tile_message = "Kestrel Suite error. Contact your IT help desk.",
     .tile_title = "Kestrel Suite error",
     .title = "Kestrel Suite error",
     .short_message = "Contact your IT help desk.",
     .long_message = "Unexpected Kestrel Suite error, contact your IT help desk."},
    // ALERT_INTERCEPTOR
    {.priority = 4,
     .tile_message = "Cannot communicate with the network interceptor component.",
     .tile_title = "Network interceptor error",
     .title = "Network interceptor error",
     .long_message = "Cannot communicate with the network interceptor component, contact your IT help desk."},
    // ALERT_POSTURE
    {.priority = 3,
     .tile_message = "Plover Desktop on your device is not responding. Contact your IT help desk.",
     .tile_title = "Plover Desktop error",
     .title = "Plover Desktop error",
     .short_message = "Try relaunching Plover Desktop App.",
     .long_message = "Plover Desktop app on your device is not responding. Try to relaunch the application. "
                     "If this error persists, contact your IT help desk."},
    // ALERT_HW_KEY_STORE
    {.priority = 5,
     .tile_message = "Error communicating with TPM on your device. Contact your IT help desk.",
     .tile_title = "TPM Error",
     .title = "TPM Error",
     .long_message =
         "Error communicating with Trusted Platform Module (TPM) on your device. Contact your IT help desk."},
    // ALERT_CONFIG_SYNC
    {.priority = 6,
     .tile_message = "Configuration sync error. Contact your IT help desk.",
     .tile_title = "Configuration sync error",
     .title = "Configuration sync error",
     .long_message =
         "You may not be able to access all of your organization's applications. Contact your IT help desk."},
    // ALERT_SERVER_CONNECTIVITY
    {.priority = 7,
     .tile_message = "Server connectivity error. Contact your IT help desk.",
     .tile_title = "Server connectivity error",
     .title = "Server connectivity error",
     .long_message = "Unable to communicate with server. You will not be able to access all of your "
                     "organization's applications. Contact your IT help desk."},
    // ALERT_REENROLL
    {.priority = 1,
     .tile_message = "Verify your identity.",
     .tile_title = "Verify your identity",
     .toast_title = "Verify your identity",
     .toast_message =
         "Please verify your identity to renew your enrollment and continue access to secure resources.",
     .title = "Verify your identity",
     .short_message =
         "Please verify your identity to renew your enrollment and continue access to secure resources.",
     .long_message = "Please verify your identity to renew your enrollment and continue access to secure "
                     "resources. Click Continue to sign in and follow the authentication prompts.",
     .action_label = "Continue",
     .detail_title = "Verify your identity",
     .detail_description = "Enrollment will continue in a new window."},
    // ALERT_REENROLL_EXPIRED
    {.priority = 1,
     .tile_message = "Verify your identity.",
     .tile_title = "Verify your identity",
     .toast_title = "Verify your identity",
     .toast_message = "Please verify your identity to renew your expired enrollment and continue access to "
                      "secure resources.",
     .title = "Verify your identity",
     .short_message = "Please verify your identity to renew your expired enrollment and continue access to "
                      "secure resources.",
     .long_message = "Please verify your identity to renew your expired enrollment and continue access to "
                     "secure resources. Click Continue to sign in and follow the authentication prompts.",
     .action_label = "Continue",
     .detail_title = "Verify your identity",
     .detail_description = "Enrollment will continue in a new window."},
    // ALERT_REENROLL_REVOKED
    {.priority = 1,
     .tile_message = "Verify your identity.",
     .tile_title = "Verify your identity",
     .toast_title = "Verify your identity",
     .toast_message = "Please verify your identity to renew your suspended enrollment and continue access to "
                      "secure resources.",
     .title = "Verify your identity",
     .short_message = "Please verify your identity to renew your suspended enrollment and continue access to "
                      "secure resources.",
     .long_message = "Please verify your identity to renew your suspended enrollment and continue access to "
                     "secure resources. Click Continue to sign in and follow the authentication prompts.",
     .action_label = "Continue",
     .detail_title = "Verify your identity",
     .detail_description = "Enrollment will continue in a new window."},
    // ALERT_DATAPLANE_AUTH
    {.priority = 2,
     .tile_message = "Verify your identity to access corporate resources.",
     .tile_title = "Verify your identity",
     .toast_title = "Verify your identity",
     .toast_message = "Your organization requires you to verify your identity so that you can securely "
                      "access corporate resources.",
     .title = "Verify your identity",
     .short_message = "Your organization requires you to verify your identity so that you can securely "
                      "access corporate resources.",
     .long_message = "Your organization requires you to verify your identity so that you can securely access "
                     "corporate resources.",
     .action_label = "Verify",
     .detail_title = "Verify your identity",
     .detail_description = "Authentication will continue in a new window."},
    // ALERT_DATAPLANE_POSTURE
    {.priority = 8,
     .tile_message = "An issue is affecting secure resource access. Please review the provided details.",
     .tile_title = "Access blocked",
     .toast_title = "Access blocked",
     .toast_message = "Access to secure resource is blocked. Contact your IT help desk.",
     .title = "Access blocked",
     .long_message = "Access to secure resource is blocked. Contact your IT help desk.",
     .action_label = "See Details"},
    // ALERT_DATAPLANE_POLICY
    {.priority = 9,
     .tile_message = "An issue is affecting secure resource access. Please review the provided details.",
     .tile_title = "Access blocked",
     .toast_title = "Access blocked",
     .toast_message = "Access to secure resource is blocked. Contact your IT help desk.",
     .title = "Access blocked",
     .long_message = "Access to secure resource is blocked. Contact your IT help desk.",
     .action_label = "See Details"},
    // ALERT_DATAPLANE_CONNECTIVITY
    {.priority = 10,
     .tile_message = "An issue is affecting secure resource access. Please review the provided details.",
     .tile_title = "Access blocked",
     .toast_title = "Access blocked",
     .toast_message = "Access to secure resource is blocked. Contact your IT help desk.",
     .title = "Access blocked",
     .long_message = "Access to secure resource is blocked. Contact your IT help desk.",
     .action_label = "See Details"},
}};
static_assert(alertStrings.size() == ALERT_DATAPLANE_CONNECTIVITY + 1);

} // namespace

const WrenAlertStrings_t& WrenAlertStringTable::GetEntry(WrenAlertId id) {
    return stringTableRow(alertStrings, id, "WrenAlertStringTable::GetEntry");
}
