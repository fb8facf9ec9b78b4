/**
 * Small forms that send one request and say in place what came of it.
 */
import { element } from "../core/dom.js";
import { RequestError } from "../core/connection.js";

/**
 * @param {object} ways
 * @param {string} ways.title
 * @param {(HTMLElement|null)[]} ways.fields
 * @param {Record<string, () => Promise<void>>} ways.actions what its buttons send, by their text; the first one is
 *     also what Enter does
 * @returns {HTMLFormElement}
 */
export function makeForm({ title, fields, actions }) {
    const outcome = element("p", { class: "outcome", role: "status" });
    const form = element("form", { class: "form", "aria-label": title }, element("h3", {}, title), ...fields);
    const run = async (action) => {
        outcome.dataset.tone = "";
        outcome.textContent = "";
        try {
            await action();
            outcome.textContent = "Done.";
        } catch (error) {
            if (!(error instanceof RequestError)) {
                throw error;
            }
            outcome.dataset.tone = "error";
            outcome.textContent = error.message;
        }
    };
    const buttons = Object.entries(actions).map(([text, action], index) => {
        const made = element("button", { type: index === 0 ? "submit" : "button", class: "action" }, text);
        if (index > 0) {
            made.addEventListener("click", () => run(action));
        }
        return made;
    });
    form.addEventListener("submit", (event) => {
        event.preventDefault();
        run(Object.values(actions)[0]);
    });
    form.append(element("div", { class: "form-buttons" }, ...buttons, outcome));
    return form;
}

/** A field for a whole number. */
export function numberInput(value, least, most) {
    return element("input", {
        type: "number",
        step: "1",
        inputmode: "numeric",
        required: "",
        value: String(value),
        min: String(least),
        max: String(most),
    });
}

/** A choice of one word. */
export function select(words) {
    return element("select", {}, ...words.map((word) => element("option", {}, word)));
}

/** A large field for a text that a machine reads. */
export function codeArea(rows, value = "") {
    const made = element("textarea", { class: "code-area", rows: String(rows), spellcheck: "false", autocomplete: "off" });
    made.value = value;
    return made;
}
