/// The fixed texts of alerts: what each says on the tile, in the toast and on the alert page.
#pragma once

#include <cstdint>

/// Each numbers its row.
enum WrenAlertId : std::uint8_t {
    ALERT_UNEXPECTED,
    ALERT_IPC_FAILURE,
    ALERT_NO_CHOICE,
    ALERT_NOT_SINGLE_USER,
    ALERT_NO_SERVICE,
    ALERT_GLOBAL_ERROR,
    ALERT_INTERCEPTOR,
    ALERT_POSTURE,
    ALERT_HW_KEY_STORE,
    ALERT_CONFIG_SYNC,
    ALERT_SERVER_CONNECTIVITY,
    ALERT_REENROLL,
    ALERT_REENROLL_EXPIRED,
    ALERT_REENROLL_REVOKED,
    ALERT_DATAPLANE_AUTH,
    ALERT_DATAPLANE_POSTURE,
    ALERT_DATAPLANE_POLICY,
    ALERT_DATAPLANE_CONNECTIVITY,
};

/// Texts are NUL-terminated and live as long as the process; one that a situation does not need is empty,
/// never null.
struct WrenAlertStrings_t {
    std::int32_t priority = 0;           ///< smaller comes first
    const char* tile_message = "";       ///< line on the main tile
    const char* tile_title = "";         ///< heading on the main tile
    const char* toast_title = "";        ///< toast heading
    const char* toast_message = "";      ///< toast body
    const char* title = "";              ///< heading on the alert page
    const char* short_message = "";      ///< the page's short description
    const char* long_message = "";       ///< the page's long description
    const char* action_label = "";       ///< label of the action's button
    const char* detail_title = "";       ///< title of the action's detail page
    const char* detail_description = ""; ///< description on the action's detail page
};

class WrenAlertStringTable {
public:
    /// The row of the id. An id beyond the table is logged and gets the row of ALERT_UNEXPECTED.
    static const WrenAlertStrings_t& GetEntry(WrenAlertId id);
};
