/**
 * Payloads as the module writes them, with texts that it writes.
 */

export function progress(title, percent) {
    return { flow: "enrollment", value: { state: "progress", title, percent_complete: percent } };
}

export function alerts(...list) {
    return { flow: "alert", value: { alerts: list } };
}

export function alertsWithSection(strings, ...list) {
    return { flow: "alert", value: { alerts: list, multiAlertPageStrings: strings } };
}

export function alert(title, shortDescription, longDescription, action) {
    return { title, shortDescription, longDescription, ...(action ? { actions: [action] } : {}) };
}

/** So many alerts, each with a number in its title and as much text as real ones have. */
export function numbered(count) {
    const text = "Access to secure resource is blocked. Contact your IT help desk. ";
    return Array.from({ length: count }, (_, index) => alert(`Alert ${index}`, text, text.repeat(6)));
}

export function local(label, title, description, type, value) {
    return {
        type: "local",
        label,
        detailPage: { title, description },
        kestrelSuiteEvent: { type, value },
    };
}

export function remote(label, url) {
    return { type: "remote", label, url };
}

export const issuesSection = {
    alertSectionTitle: "Issues affecting secure resource access",
    alertSectionDescription:
        "We have identified some issues that may affect your access to secure resources. " +
        "Please take a moment to review the detailed information provided.",
    alertSectionActionLabel: "See Details",
    alertListTitle: "Issues affecting secure resource access",
    alertListDescription: "Resolve the following issues or contact your IT help desk.",
};

export const emptySection = {
    alertSectionTitle: "",
    alertSectionDescription: "",
    alertSectionActionLabel: "",
    alertListTitle: "",
    alertListDescription: "",
};

export const interceptor = alert(
    "Network interceptor error",
    "",
    "Cannot communicate with the network interceptor component, contact your IT help desk.",
);

export const posture = alert(
    "Plover Desktop error",
    "Try relaunching Plover Desktop App.",
    "Plover Desktop app on your device is not responding. Try to relaunch the application. " +
        "If this error persists, contact your IT help desk.",
);

export const noService = alert(
    "Kestrel Suite error",
    "Try restarting your computer.",
    "Cannot communicate with the Kestrel Suite service. Try restarting your computer. " +
        "If this problem persists, contact your IT help desk.",
);

export const reenroll = alert(
    "Verify your identity",
    "Please verify your identity to renew your enrollment and continue access to secure resources.",
    "Please verify your identity to renew your enrollment and continue access to secure resources. " +
        "Click Continue to sign in and follow the authentication prompts.",
    local(
        "Continue",
        "Verify your identity",
        "Enrollment will continue in a new window.",
        "re-enroll",
        "enrollment-7",
    ),
);

export function verify(contextId) {
    const text =
        "Your organization requires you to verify your identity so that you can securely access corporate resources.";
    return alert(
        "Verify your identity",
        text,
        text,
        local(
            "Verify",
            "Verify your identity",
            "Authentication will continue in a new window.",
            "dataplane-auth",
            contextId,
        ),
    );
}

export function blocked(url, label = "See Details") {
    return alert(
        "Access blocked",
        "",
        "Access to secure resource is blocked. Contact your IT help desk.",
        remote(label, url),
    );
}
