/**
 * What a host says about the screen, with texts that the module writes.
 */

export const label = (id, value, more = {}) => ({
    element: "label",
    id,
    hidden: false,
    disabled: false,
    attributes: { id, value, tooltip: "", color: "black", hidden: "false", disabled: "false" },
    ...more,
});

export const button = (id, text, more = {}) => ({
    element: "button",
    id,
    hidden: false,
    disabled: false,
    attributes: { id, label: text, tooltip: text, OnPress: `${id}_OnPress` },
    ...more,
});

const gone = { hidden: true, disabled: true };

/** The tile with the buttons of these names shown. */
export function tile(status, ...shown) {
    const one = (name) =>
        button(`quill_tile_${name.toLowerCase()}_action_btn`, name, shown.includes(name) ? {} : gone);
    return {
        kind: "tile",
        title: "Wren Gate",
        controls: [
            label("simple_tile_label", "Wren Gate"),
            label("simple_status", status),
            ...["Enroll", "Cancel", "Details", "Verify"].map(one),
        ],
    };
}

export function enrollmentGroup({ managed = false, canUnenroll = false } = {}) {
    return {
        kind: "group",
        title: "Wren Gate Enrollments:",
        controls: [
            label("quill_adv_enrollment_group_label", "Wren Gate Enrollments:"),
            label(
                "quill_adv_enrollment_description_label",
                "To unregister from the Wren Gate service, click the Unenroll button. This will initiate the process of " +
                    "unregistering your account and removing any associated configuration from the service.",
            ),
            button("quill_adv_unenroll_btn", "Unenroll", { disabled: !canUnenroll }),
            label("quill_adv_unenroll_managed_label", "This setting is managed by your administrator.", { hidden: !managed }),
        ],
    };
}

export function syncGroup(last = "None", { canSync = false } = {}) {
    return {
        kind: "group",
        title: "Configuration Synchronization:",
        controls: [
            label("quill_config_sync_group_label", "Configuration Synchronization:"),
            label("quill_config_sync_description_label", "Sync your device to get the latest updates from your organization."),
            label("quill_config_sync_last_sync_desc_label", "Last successful sync:"),
            label("quill_config_sync_last_sync_label", last),
            button("quill_config_sync_btn", "Sync now", { disabled: !canSync }),
        ],
    };
}

const rows = (values) => Object.entries(values).map(([title, value], index) => ({ id: `row-${index}`, columns: [title, value] }));

export function statistics({ flows = "12", proxies = {} } = {}) {
    const proxyGroup =
        Object.keys(proxies).length === 0
            ? []
            : [{ id: "stat_group_proxy_configs_info", title: "Proxy Configurations:", rows: rows(proxies) }];
    return {
        stat_outlinelistbox: [
            {
                id: "stat_group_general_info",
                title: "General:",
                rows: rows({ "Enrollment Time:": "11/03/26 09:41:12", "Proxy Connectivity Status:": "Ok" }),
            },
            {
                id: "stat_group_config_sync_info",
                title: "Config Sync",
                rows: rows({
                    "Server Connectivity:": "Ok",
                    "Sync Interval (minutes):": "60",
                    "Last Successful Sync:": "11/21/26 08:00:03",
                    "Failed Attempts Since Last Sync:": "0",
                }),
            },
            {
                id: "stat_group_active_flow_info",
                title: "Active Flow Counts:",
                rows: rows({ "Active UDP Flows:": flows, "Active TCP Flows:": "7" }),
            },
            ...proxyGroup,
        ],
        overview_stat_outlinelistbox: [
            {
                id: "stat_overview_group_quill",
                title: "Wren Gate (Active)",
                rows: rows({
                    "Certificate Status:": "Ok",
                    "Config Sync Status:": "Ok",
                    "Proxy Status:": "Ok",
                    "Interceptor Status:": "Ok",
                }),
            },
        ],
    };
}

export function screen(more = {}) {
    return { window: "", parts: [], tray: { state: "", text: "" }, statistics: {}, popups: [], toasts: [], history: [], ...more };
}

const morning = Date.UTC(2026, 10, 21, 9, 0, 0);

export const history = (...texts) => texts.map((text, index) => ({ number: index + 1, time: morning + 61000 * index, text }));

/** A device that is enrolled and healthy. */
export function active(more = {}) {
    return screen({
        parts: [
            tile("Wren Gate is active."),
            enrollmentGroup({ canUnenroll: true }),
            syncGroup("11/21/26 08:00:03", { canSync: true }),
        ],
        tray: { state: "Good", text: "Active" },
        statistics: statistics({ proxies: { "Example proxy": "Active" } }),
        history: history("Initializing. Please wait...", "Enrolling...", "Wren Gate is active."),
        ...more,
    });
}

/** A device that waits for its user to enroll. */
export function unenrolled(more = {}) {
    const text = "Registration is required to access secure resources.";
    return screen({
        parts: [tile(text, "Enroll"), enrollmentGroup(), syncGroup()],
        tray: { state: "Attention", text: "Registration required" },
        statistics: statistics({ flows: "0" }),
        history: history("Initializing. Please wait...", text),
        ...more,
    });
}

export function errorDialog(header = "Enrollment failed", details = "The server could not be reached. Contact your IT help desk.") {
    return {
        id: "wren_client_error_dialog",
        type: "custom",
        title: "Norvane Kestrel Suite",
        texts: [header, details],
        controls: [
            { element: "closebutton", id: "wren_client_error_gen_close_btn", hidden: false, disabled: false, attributes: {} },
            button("wren_client_error_close_btn", "Close"),
        ],
        number: 1,
        browser: null,
    };
}

export function browserPopup(id, browser, number = 1) {
    return {
        id,
        type: "browser",
        title: "Norvane Kestrel Suite - Wren Gate",
        texts: [],
        controls: [],
        number,
        browser: { number: 1, operation: "browse_for_cookie", address: "", start_url: "", detail: "", detail_number: 0, ...browser },
    };
}

export const login = (more = {}) =>
    browserPopup("quill_enrollment_browser_dialog", {
        address: "browser/1/",
        start_url: "https://login.example.test/enroll?login=enrollment-1",
        ...more,
    });

export const localPage = (detail, detailNumber = 1, more = {}) =>
    browserPopup(
        "quill_alert_browser_dialog",
        {
            number: 2,
            operation: "browse_for_local_content",
            address: "pages/wren/v1/index.html",
            start_url: "wren/v1/index.html",
            detail,
            detail_number: detailNumber,
            ...more,
        },
        2,
    );

export function toast(number, texts, ...buttons) {
    return { number, time: morning, id: "wren_toast_popup", title: "Verify your identity", texts: [texts], controls: buttons };
}
