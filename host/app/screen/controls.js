/**
 * Labels and buttons as the notices describe them. What they hide isn't there, and what they disable can't be
 * pressed.
 *
 * @typedef {import("../core/protocol.js").Control} Control
 */
import { button, element, setAttribute, setText } from "../core/dom.js";
import { keepChildren } from "../core/keyed.js";

/** @param {Control} control */
export function isShown({ element: name, hidden }) {
    return !hidden && (name === "label" || name === "button");
}

/**
 * Shows controls in `parent`, in their order.
 * @param {HTMLElement} parent
 * @param {readonly Control[]} controls
 * @param {(control: Control) => void} press
 */
export function showControls(parent, controls, press) {
    const latest = new Map(controls.map((control) => [control.id, control]));
    keepChildren(parent, controls.filter(isShown), {
        key: ({ id, element: name }) => `${name} ${id}`,
        make: ({ id, element: name }) =>
            name === "button"
                ? button({ class: "action", "data-control": id }, () => pressLatest(parent, id))
                : element("p", { class: "label", "data-control": id, dir: "auto" }),
        update: (made, control) => (control.element === "button" ? updateButton : updateLabel)(made, control),
    });
    states.set(parent, { latest, press });
}

const states = new WeakMap();

// A button outlives many notices, so it looks up what it stands for now.
function pressLatest(parent, id) {
    const { latest, press } = states.get(parent);
    press(latest.get(id));
}

function updateButton(made, { attributes, disabled }) {
    setText(made, attributes.label ?? "");
    setAttribute(made, "title", attributes.tooltip && attributes.tooltip !== attributes.label ? attributes.tooltip : null);
    made.disabled = disabled;
}

function updateLabel(made, { attributes, disabled }) {
    setText(made, attributes.value ?? "");
    setAttribute(made, "title", attributes.tooltip && attributes.tooltip !== attributes.value ? attributes.tooltip : null);
    setAttribute(made, "aria-disabled", disabled ? "true" : null);
    // Black is the notices' word for the usual colour, which is another one in the dark.
    const colour = attributes.color ?? "";
    if (colour === "" || colour === "black") {
        made.style.removeProperty("color");
    } else {
        made.style.setProperty("color", colour);
    }
}
