/**
 * The page's own words. Everything else that a user reads here comes from the payload.
 */
"use strict";

wrenPage.texts = Object.freeze({
    product: "Wren Gate",

    alert: "Alert",
    alerts: "Alerts",
    clearTitle: "Nothing needs your attention",
    clearText: "There are no alerts. You can close this window.",

    progress: "Enrolling",
    progressText: "This can take a few minutes. The window keeps itself up to date.",
    percent: (percent) => `${percent}%`,

    back: "Back",
    backToAlerts: (count) => `All alerts (${count})`,
    openList: "See details",
    openAction: "Continue",
    sendAction: "Continue",
    sent: "Requested. Please go on in the window that opens.",

    check: "Check again",
    checkText: "Asks for a new check of this device.",
    checkRequested: "A new check was requested. This page changes by itself when there is news.",

    addressOfLink: "Leads to",
    addressAlone: "Address:",

    brokenUpdate: "The latest update could not be read, so what you see may be a little out of date.",
    brokenFirstUpdate: "The latest update could not be read. Waiting for the next one.",

    noAlerts: "No alerts.",
    oneAlert: (title) => `1 alert: ${title}`,
    manyAlerts: (count) => `${count} alerts.`,
    alertGone: "The alert that you were reading is no longer reported.",
});
