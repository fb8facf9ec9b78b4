/**
 * Reads what the host hands over: Base64 of the UTF-8 text of one JSON object. Nothing here touches the page.
 *
 * A payload is shown whole or not at all: whatever is missing or of the wrong kind refuses all of it. Keys that
 * are not known are passed over, so that a newer sender may say more than this page can show.
 *
 * @typedef {object} KestrelSuiteEvent what goes back to the host
 * @property {string} type
 * @property {string} value
 *
 * @typedef {object} LocalAction leads to a page of its own, from which an event goes to the host
 * @property {"local"} kind
 * @property {string} label
 * @property {string} title heading of its page
 * @property {string} description text of its page
 * @property {KestrelSuiteEvent} event
 *
 * @typedef {object} RemoteAction names an address; whether it is fit to be a link is for `webAddress` to say
 * @property {"remote"} kind
 * @property {string} label
 * @property {string} address
 *
 * @typedef {object} Alert
 * @property {string} title
 * @property {string} shortText
 * @property {string} longText
 * @property {(LocalAction|RemoteAction)[]} actions
 *
 * @typedef {object} AlertFlow
 * @property {"alert"} flow
 * @property {Alert[]} alerts
 * @property {PageStrings} strings empty texts where the payload has none
 *
 * @typedef {object} PageStrings
 * @property {string} sectionTitle
 * @property {string} sectionText
 * @property {string} sectionLabel
 * @property {string} listTitle
 * @property {string} listText
 *
 * @typedef {object} EnrollmentFlow
 * @property {"enrollment"} flow
 * @property {string} title
 * @property {number} percent a whole number from 0 to 100
 *
 * @typedef {AlertFlow|EnrollmentFlow} Flow
 */
"use strict";
{
    /** Why a payload was refused, in words for whoever looks into it. They never quote the payload. */
    class PayloadError extends Error {
        name = "PayloadError";
    }

    // How many letters are decoded at once: a multiple of four, small beside a payload of megabytes.
    const pieceLength = 0x10000;

    /**
     * Decodes and checks one payload.
     * @param {unknown} detail the Base64 text
     * @returns {Flow}
     * @throws {PayloadError}
     */
    function readDetail(detail) {
        return readPayload(decodeDetail(detail));
    }

    /**
     * Undoes the Base64, the UTF-8 and the JSON.
     * @param {unknown} detail the Base64 text
     * @returns {unknown} the JSON value
     * @throws {PayloadError}
     */
    function decodeDetail(detail) {
        if (typeof detail !== "string") {
            throw new PayloadError("the detail is not a text");
        }
        if (!isBase64(detail)) {
            throw new PayloadError("the detail is not Base64");
        }
        const text = textOf(detail);
        try {
            return JSON.parse(text);
        } catch {
            throw new PayloadError("the text is not JSON");
        }
    }

    // atob alone would let white space and missing padding pass. The search is for a single letter, since an expression
    // that repeats a group needs stack for each round: a payload of a few megabytes exhausts it.
    function isBase64(detail) {
        const end = detail.search(/[^A-Za-z0-9+/]/);
        const padding = end < 0 ? "" : detail.slice(end);
        return detail.length % 4 === 0 && ["", "=", "=="].includes(padding);
    }

    function textOf(base64) {
        const decoder = new TextDecoder("utf-8", { fatal: true });
        let text = "";
        try {
            for (let start = 0; start < base64.length; start += pieceLength) {
                text += decoder.decode(bytesOf(base64.slice(start, start + pieceLength)), { stream: true });
            }
            return text + decoder.decode();
        } catch {
            throw new PayloadError("the text is not UTF-8");
        }
    }

    function bytesOf(base64) {
        const letters = atob(base64);
        const bytes = new Uint8Array(letters.length);
        for (let index = 0; index < letters.length; ++index) {
            bytes[index] = letters.charCodeAt(index);
        }
        return bytes;
    }

    /**
     * Checks a payload's shape and keeps what this page shows.
     * @param {unknown} value the JSON value
     * @returns {Flow}
     * @throws {PayloadError}
     */
    function readPayload(value) {
        const payload = objectOf(value, "payload");
        const flow = textIn(payload, "flow");
        switch (flow) {
            case "alert":
                return alertFlow(objectOf(payload.value, "value"));
            case "enrollment":
                return enrollmentFlow(objectOf(payload.value, "value"));
            default:
                throw new PayloadError("the flow is not known");
        }
    }

    /** Whether there is anything to put on the page that leads to the list. */
    function hasSection({ strings }) {
        return strings.sectionTitle !== "" || strings.sectionText !== "" || strings.sectionLabel !== "";
    }

    function alertFlow(value) {
        return {
            flow: "alert",
            alerts: arrayIn(value, "alerts").map(alertOf),
            strings: pageStrings(value.multiAlertPageStrings),
        };
    }

    function alertOf(value) {
        const alert = objectOf(value, "alert");
        return {
            title: textIn(alert, "title"),
            shortText: textIn(alert, "shortDescription"),
            longText: textIn(alert, "longDescription"),
            actions: alert.actions === undefined ? [] : arrayIn(alert, "actions").map(actionOf),
        };
    }

    function actionOf(value) {
        const action = objectOf(value, "action");
        const label = textIn(action, "label");
        switch (textIn(action, "type")) {
            case "local": {
                const page = objectOf(action.detailPage, "detailPage");
                const event = objectOf(action.kestrelSuiteEvent, "kestrelSuiteEvent");
                return {
                    kind: "local",
                    label,
                    title: textIn(page, "title"),
                    description: textIn(page, "description"),
                    event: { type: textIn(event, "type"), value: textIn(event, "value") },
                };
            }
            case "remote":
                return { kind: "remote", label, address: textIn(action, "url") };
            default:
                throw new PayloadError("the action's type is not known");
        }
    }

    function pageStrings(value) {
        if (value === undefined) {
            return { sectionTitle: "", sectionText: "", sectionLabel: "", listTitle: "", listText: "" };
        }
        const strings = objectOf(value, "multiAlertPageStrings");
        return {
            sectionTitle: textIn(strings, "alertSectionTitle"),
            sectionText: textIn(strings, "alertSectionDescription"),
            sectionLabel: textIn(strings, "alertSectionActionLabel"),
            listTitle: textIn(strings, "alertListTitle"),
            listText: textIn(strings, "alertListDescription"),
        };
    }

    function enrollmentFlow(value) {
        if (textIn(value, "state") !== "progress") {
            throw new PayloadError("the enrollment's state is not known");
        }
        const percent = value.percent_complete;
        if (!Number.isInteger(percent) || percent < 0) {
            throw new PayloadError("percent_complete is not a whole number");
        }
        return { flow: "enrollment", title: textIn(value, "title"), percent: Math.min(percent, 100) };
    }

    function objectOf(value, name) {
        if (typeof value !== "object" || value === null || Array.isArray(value)) {
            throw new PayloadError(`${name} is not an object`);
        }
        return value;
    }

    function textIn(object, key) {
        if (!Object.hasOwn(object, key) || typeof object[key] !== "string") {
            throw new PayloadError(`${key} is not a text`);
        }
        return object[key];
    }

    function arrayIn(object, key) {
        if (!Object.hasOwn(object, key) || !Array.isArray(object[key])) {
            throw new PayloadError(`${key} is not an array`);
        }
        return object[key];
    }

    wrenPage.payload = { PayloadError, readDetail, decodeDetail, readPayload, hasSection };
}
