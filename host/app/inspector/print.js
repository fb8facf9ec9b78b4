/**
 * Documents as lines of coloured words. Pure: what comes out is data, which `codeBlock` turns into elements.
 *
 * @typedef {[kind: "name"|"key"|"text"|"number"|"word"|"mark"|"plain", text: string]} Piece
 * @typedef {{depth: number, pieces: Piece[]}} Line
 */
import { element } from "../core/dom.js";
import { printable } from "../core/text.js";

/**
 * @param {unknown} value of JSON
 * @param {number} [depth]
 * @returns {Line[]}
 */
export function jsonLines(value, depth = 0) {
    if (typeof value !== "object" || value === null) {
        return [{ depth, pieces: [scalar(value)] }];
    }
    const isArray = Array.isArray(value);
    const [opening, closing] = isArray ? ["[", "]"] : ["{", "}"];
    const entries = Object.entries(value);
    if (entries.length === 0) {
        return [{ depth, pieces: [["mark", opening + closing]] }];
    }
    const lines = [{ depth, pieces: [["mark", opening]] }];
    entries.forEach(([key, inner], index) => {
        const innerLines = jsonLines(inner, depth + 1);
        if (!isArray) {
            innerLines[0].pieces.unshift(["key", JSON.stringify(key)], ["mark", ": "]);
        }
        if (index < entries.length - 1) {
            innerLines.at(-1).pieces.push(["mark", ","]);
        }
        // One by one: a list may be longer than a call may have arguments.
        for (const line of innerLines) {
            lines.push(line);
        }
    });
    lines.push({ depth, pieces: [["mark", closing]] });
    return lines;
}

function scalar(value) {
    const kind = { string: "text", number: "number" }[typeof value] ?? "word";
    return [kind, JSON.stringify(value)];
}

/**
 * @param {import("./xml.js").XmlElement} node
 * @param {number} [depth]
 * @returns {Line[]}
 */
export function xmlLines(node, depth = 0) {
    const attributes = node.attributes.flatMap(([key, value]) => [
        ["plain", " "],
        ["key", key],
        ["mark", "="],
        ["text", `"${encode(value)}"`],
    ]);
    const text = node.text.trim();
    const isEmpty = node.children.length === 0 && text === "";
    const lines = [{ depth, pieces: [["mark", "<"], ["name", node.name], ...attributes, ["mark", isEmpty ? "/>" : ">"]] }];
    if (isEmpty) {
        return lines;
    }
    return [
        ...lines,
        ...(text === "" ? [] : textLines(text, depth + 1)),
        ...node.children.flatMap((child) => xmlLines(child, depth + 1)),
        { depth, pieces: [["mark", "</"], ["name", node.name], ["mark", ">"]] },
    ];
}

// The module's copies of documents are JSON inside an element.
function textLines(text, depth) {
    try {
        const value = JSON.parse(text);
        if (typeof value === "object" && value !== null) {
            return jsonLines(value, depth);
        }
    } catch {
        // Then it is a text.
    }
    return text.split("\n").map((line) => ({ depth, pieces: [["plain", line]] }));
}

function encode(text) {
    return text.replace(/[&<"]/g, (letter) => ({ "&": "&amp;", "<": "&lt;", '"': "&quot;" })[letter]);
}

/**
 * @param {Line[]} lines
 * @param {string} label what a screen reader calls it
 * @returns {HTMLElement}
 */
export function codeBlock(lines, label) {
    const code = element("code");
    lines.forEach(({ depth, pieces }, index) => {
        const line = element("span", { class: "code-line" });
        line.style.setProperty("--depth", String(depth));
        line.append(
            ...pieces.map(([kind, text]) => (kind === "plain" ? printable(text) : element("span", { class: `code-${kind}` }, printable(text)))),
        );
        code.append(index === 0 ? "" : "\n", line);
    });
    return element("pre", { class: "code", tabindex: "0", role: "region", "aria-label": label }, code);
}
