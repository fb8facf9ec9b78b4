/**
 * What kind of thing an entry is, and how it reads on one line. Pure.
 *
 * @typedef {import("../core/protocol.js").Entry} Entry
 *
 * @typedef {object} Kind
 * @property {string} name of its filter
 * @property {string} label of its filter
 */
import { printable } from "../core/text.js";
import { attributeOf, parseXml } from "./xml.js";

/** @type {readonly Kind[]} */
export const kinds = Object.freeze([
    { name: "call", label: "Calls" },
    { name: "event", label: "Events" },
    { name: "document", label: "Documents" },
    { name: "notice", label: "Notices" },
    { name: "request", label: "Requests" },
    { name: "log", label: "Log" },
    { name: "service", label: "Service" },
    { name: "info", label: "Remarks" },
]);

export const severities = Object.freeze(["trace", "info", "warning", "error"]);

const kindOfInput = Object.freeze({ event: "event", deliver: "document", service: "service", scenario: "service", backend: "service", pace: "service", slow: "service" });
const kindOfOutput = Object.freeze({ notice: "notice", api: "request", log: "log", violation: "info", info: "info" });

/** @param {Entry} entry */
export function isInput(entry) {
    return entry.do !== undefined;
}

/**
 * @param {Entry} entry
 * @returns {string} the name of its kind; what isn't known is a call
 */
export function kindOf(entry) {
    const [table, key] = isInput(entry) ? [kindOfInput, entry.do] : [kindOfOutput, entry.out];
    return Object.hasOwn(table, key) ? table[key] : "call";
}

/**
 * The word on an entry's badge.
 * @param {Entry} entry
 */
export function badgeOf(entry) {
    return entry.out === "log" ? (severities[entry.severity] ?? "log") : (entry.do ?? entry.out);
}

/**
 * How much an entry wants to be seen.
 * @param {Entry} entry
 * @returns {"error"|"attention"|"quiet"|"usual"}
 */
export function weightOf(entry) {
    if (entry.out === "violation") {
        return "error";
    }
    if (entry.out === "log") {
        return ["quiet", "usual", "attention", "error"][entry.severity] ?? "usual";
    }
    const isRefusal = entry.out === "result" && typeof entry.value === "number" && entry.value < 0;
    return isRefusal || entry.value === false ? "attention" : "usual";
}

/**
 * @param {Entry} entry
 * @returns {string} what it says, on one line
 */
export function summaryOf(entry) {
    const [table, key] = isInput(entry) ? [inputs, entry.do] : [outputs, entry.out];
    return printable((Object.hasOwn(table, key) ? table[key] : rest)(entry));
}

const inputs = Object.freeze({
    event: ({ xml }) => fromXml(xml, (root) => attributeOf(root, "id") || root.name),
    deliver: ({ document, json }) => `${document} · ${json === undefined ? "(not UTF-8)" : documentSummary(json)}`,
    service: ({ json }) => json ?? "(not UTF-8)",
    scenario: ({ json }) => json ?? "(not UTF-8)",
    pace: ({ percent }) => `${percent} %`,
    slow: ({ milliseconds }) => `${milliseconds} ms for each notice`,
    stop: ({ reason }) => (reason === undefined ? "" : `reason ${reason}`),
    get: ({ what }) => what,
    inert: ({ operation }) => operation,
    create: ({ name, kind }) => `${name}${kind === undefined ? "" : ` (${kind})`}`,
});

const outputs = Object.freeze({
    notice: ({ xml }) => fromXml(xml, noticeSummary),
    api: ({ operation, json }) => (json ? `${operation} ${json}` : operation),
    log: ({ message }) => message ?? "(not UTF-8)",
    violation: ({ rule, text }) => `${rule}: ${text}`,
    info: ({ text }) => text,
    result: ({ value, text }) => (text === undefined ? String(value) : `${value} ${JSON.stringify(text)}`),
});

const ownKeys = new Set(["seq", "time", "thread", "input", "do", "out", "n"]);

function rest(entry) {
    return Object.entries(entry)
        .filter(([key]) => !ownKeys.has(key))
        .map(([key, value]) => `${key} ${JSON.stringify(value)}`)
        .join(", ");
}

// Every document tells its state in one or two words.
function documentSummary(json) {
    try {
        const { state, substate, status, substatus } = JSON.parse(json);
        const words = [state, substate, status, substatus].filter((word) => typeof word === "string" && word !== "");
        return words.length > 0 ? words.join(" · ") : json;
    } catch {
        return json;
    }
}

function fromXml(xml, read) {
    if (xml === undefined) {
        return "(not UTF-8)";
    }
    try {
        return read(parseXml(xml));
    } catch {
        return xml;
    }
}

function noticeSummary(root) {
    const popup = root.children.find(({ name }) => name === "popup");
    const said = popup === undefined ? screenSummary(root) : popupSummary(popup);
    return [attributeOf(root, "type"), said].filter(Boolean).join(" · ");
}

function popupSummary(popup) {
    const title = popup.children.find(({ name }) => name === "title");
    const verb = attributeOf(popup, "dispose") === "true" ? "goes" : "";
    return [attributeOf(popup, "id"), verb, title === undefined ? "" : attributeOf(title, "value")].filter(Boolean).join(" · ");
}

function screenSummary(root) {
    const status = root.children.find((child) => attributeOf(child, "id") === "simple_status");
    const history = root.children.find(({ name }) => name === "log");
    const text = status ? attributeOf(status, "value") : history ? attributeOf(history, "messagehistory") : "";
    const first = root.children[0];
    return [attributeOf(root, "state"), text || (first ? attributeOf(first, "id") || first.name : "")].filter(Boolean).join(" · ");
}
