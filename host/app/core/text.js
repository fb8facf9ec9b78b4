/**
 * Texts of the module and the service, as they may be shown.
 */

// Control characters, separators of lines and paragraphs, and what changes the direction of writing.
const obeyed = /[\u0000-\u001f\u007f-\u009f\u2028-\u202e\u2066-\u2069]/g;

const names = new Map([
    ["\n", "\\n"],
    ["\r", "\\r"],
    ["\t", "\\t"],
]);

/**
 * The text on one line, with everything spelled out that a browser would obey instead of showing it: a line of its
 * own, or text in another order, could pass for something else. The host's terminal commands spell it alike.
 * @param {string} text
 * @returns {string}
 */
export function printable(text) {
    return text.replace(obeyed, (letter) => names.get(letter) ?? `\\u${letter.codePointAt(0).toString(16).toUpperCase().padStart(4, "0")}`);
}
