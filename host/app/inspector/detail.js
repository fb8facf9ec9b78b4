/**
 * One entry in full: what it is, when and why it happened, and its document laid out to be read.
 *
 * @typedef {import("../core/protocol.js").Entry} Entry
 */
import { exactTimeOfDay } from "../core/clock.js";
import { button, element } from "../core/dom.js";
import { printable } from "../core/text.js";
import { changes } from "./difference.js";
import { badgeOf, kindOf, severities, weightOf } from "./kinds.js";
import { codeBlock, jsonLines, xmlLines } from "./print.js";
import { parseXml } from "./xml.js";

const mostChanges = 200;

/**
 * @param {HTMLElement} around
 * @param {import("./journal.js").Journal} journal
 * @param {(seq: number) => void} goTo selects another entry
 */
export function useDetail(around, journal, goTo) {
    const nothing = element("p", { class: "empty" }, "Select an entry to read it in full.");
    around.append(nothing);

    /** @param {Entry} entry */
    function show(entry) {
        around.replaceChildren(head(entry, journal, goTo), ...body(entry, journal, goTo));
        around.scrollTop = 0;
    }

    return {
        show,
        clear: () => around.replaceChildren(nothing),
    };
}

function head(entry, journal, goTo) {
    const source = journal.find(entry.input);
    return element(
        "header",
        { class: "detail-head" },
        badge(entry),
        element("span", { class: "detail-number" }, `#${entry.seq}`),
        element("span", {}, exactTimeOfDay(entry.time)),
        element("span", {}, `thread ${entry.thread}`),
        source === undefined
            ? null
            : element(
                  "span",
                  {},
                  "caused by ",
                  button({ class: "link" }, () => goTo(source.seq), `#${source.seq} ${badgeOf(source)}`),
              ),
        copyButton(entry),
    );
}

/** The word that tells what an entry is, in the colour of its kind. */
export function badge(entry) {
    return element("span", { class: "kind", "data-kind": kindOf(entry), "data-weight": weightOf(entry) }, badgeOf(entry));
}

function copyButton(entry) {
    const made = button({ class: "quiet small copy" }, async () => {
        await navigator.clipboard.writeText(entry.xml ?? entry.json ?? entry.message ?? JSON.stringify(entry, null, 2));
        made.textContent = "Copied";
    }, "Copy");
    return made;
}

function body(entry, journal, goTo) {
    switch (kindOf(entry)) {
        case "notice":
        case "event":
            return [...xmlBlock(entry), ...payloadBlock(entry)];
        case "document":
            return [factList([["Document", entry.document]]), ...changeBlock(entry, journal, goTo), ...jsonBlock(entry)];
        case "request":
            return [factList([["Operation", entry.operation]]), ...jsonBlock(entry)];
        case "log":
            return [logBlock(entry)];
        case "service":
            return entry.json === undefined ? [rawBlock(entry)] : jsonBlock(entry);
        default:
            return [rawBlock(entry)];
    }
}

function xmlBlock(entry) {
    if (entry.xml === undefined) {
        return [rawBlock(entry)];
    }
    try {
        return [codeBlock(xmlLines(parseXml(entry.xml)), "XML")];
    } catch {
        return [note("This is not XML that can be laid out; here it is as it came."), plainBlock(entry.xml)];
    }
}

// What a local page is given is Base64 of JSON, in an attribute.
function payloadBlock({ xml = "" }) {
    const found = /event_dispatch_detail="([A-Za-z0-9+/=]+)"/.exec(xml);
    try {
        const bytes = Uint8Array.from(atob(found[1]), (letter) => letter.charCodeAt(0));
        const value = JSON.parse(new TextDecoder("utf-8", { fatal: true }).decode(bytes));
        return [element("h4", {}, "Payload of the local page"), codeBlock(jsonLines(value), "Payload as JSON")];
    } catch {
        return [];
    }
}

function jsonBlock(entry) {
    if (entry.json === undefined) {
        return [rawBlock(entry)];
    }
    if (entry.json === null) {
        return [note("No request text.")];
    }
    const value = valueOf(entry);
    return value === undefined
        ? [note("This is not JSON; here it is as it came."), plainBlock(entry.json)]
        : [codeBlock(jsonLines(value), "JSON")];
}

function changeBlock(entry, journal, goTo) {
    const before = journal.documentBefore(entry);
    const now = valueOf(entry);
    const then = before && valueOf(before);
    if (now === undefined || then === undefined) {
        return [];
    }
    const found = changes(then, now);
    const link = button({ class: "link" }, () => goTo(before.seq), `#${before.seq}`);
    if (found.length === 0) {
        return [element("p", { class: "note" }, "The same as the one before, ", link, ".")];
    }
    const rows = found.slice(0, mostChanges).map(({ path, before: old, after }) =>
        element(
            "tr",
            {},
            element("th", { scope: "row" }, printable(path)),
            element("td", {}, old === null ? element("em", {}, "absent") : element("del", {}, printable(old))),
            element("td", {}, after === null ? element("em", {}, "absent") : element("ins", {}, printable(after))),
        ),
    );
    const count = found.length === 1 ? "1 change" : `${found.length} changes`;
    return [
        element("h4", {}, `${count} since `, link),
        element(
            "div",
            { class: "table-around", tabindex: "0", role: "region", "aria-label": "Changes" },
            element(
                "table",
                { class: "changes" },
                element("thead", {}, element("tr", {}, ...["Key", "Before", "Now"].map((name) => element("th", { scope: "col" }, name)))),
                element("tbody", {}, ...rows),
            ),
        ),
        found.length > mostChanges ? note(`The first ${mostChanges} of them are shown.`) : element("h4", {}, "Document"),
    ];
}

function logBlock({ severity, function: name, file, line, message }) {
    const place = [file, line].filter((part) => part !== undefined).join(":");
    return element(
        "div",
        {},
        factList([["Severity", `${severity} ${severities[severity] ?? ""}`], ["Function", name], ["File", place]]),
        codeBlock([{ depth: 0, pieces: [["plain", message ?? "(not UTF-8)"]] }], "Text"),
    );
}

function rawBlock(entry) {
    return codeBlock(jsonLines(entry), "Entry as JSON");
}

function plainBlock(text) {
    return codeBlock(text.split("\n").map((line) => ({ depth: 0, pieces: [["plain", line]] })), "Text");
}

function note(text) {
    return element("p", { class: "note" }, text);
}

function factList(facts) {
    const known = facts.filter(([, value]) => value !== undefined && value !== "");
    return element("dl", { class: "facts" }, ...known.flatMap(([key, value]) => [element("dt", {}, key), element("dd", {}, typeof value === "string" ? printable(value) : value)]));
}

function valueOf(entry) {
    try {
        return JSON.parse(entry.json);
    } catch {
        return undefined;
    }
}
