/**
 * The main window: the module's tile with its status line, its icon and its buttons.
 */
import { element, icon, setText } from "../core/dom.js";
import { lookOf } from "../core/tones.js";
import { isShown, showControls } from "./controls.js";

/**
 * @param {HTMLElement} window
 * @param {(control: import("../core/protocol.js").Control) => void} press
 */
export function useTile(window, press) {
    const badge = element("span", { class: "badge", "data-tone": "neutral" });
    const labels = element("div", { class: "tile-labels", role: "status" });
    const buttons = element("div", { class: "tile-buttons", role: "group", "aria-label": "Actions" });
    const waiting = element("p", { class: "empty" }, "The module has not drawn its tile yet.");
    const tile = element("div", { class: "tile", hidden: "" }, badge, labels, buttons);
    window.append(tile, waiting);

    let state = null;

    function showState(next) {
        if (next !== state) {
            state = next;
            const { tone, paths } = lookOf(next);
            badge.dataset.tone = tone;
            badge.dataset.state = next;
            badge.replaceChildren(icon(paths));
        }
    }

    return {
        /** @param {import("../core/protocol.js").Screen} screen */
        show({ parts, tray }) {
            const part = parts.find(({ kind }) => kind === "tile");
            tile.hidden = part === undefined;
            waiting.hidden = part !== undefined;
            if (part === undefined) {
                return;
            }
            const hadFocus = buttons.contains(document.activeElement);
            showState(tray.state);
            showControls(labels, part.controls.filter((control) => control.element === "label"), press);
            showControls(buttons, part.controls.filter((control) => control.element === "button"), press);
            buttons.hidden = !part.controls.some((control) => control.element === "button" && isShown(control));
            // A button that went while it had the focus would drop the user at the top of the page.
            if (hadFocus && !buttons.contains(document.activeElement)) {
                const next = buttons.querySelector("button:enabled") ?? document.querySelector("#screen-heading");
                next.focus({ preventScroll: true });
            }
        },
    };
}

/** The line at the right of the screen's bar: the tray icon and the text that it shows. */
export function useTray(around, toggle) {
    const state = element("span", { class: "unseen" });
    const text = element("span", { class: "tray-text", dir: "auto" });
    const badge = element("span", { class: "tray-icon" });
    const made = element("button", { type: "button", class: "tray", "data-tone": "neutral" }, badge, state, text);
    made.addEventListener("click", toggle);
    around.append(made);

    let shown = null;

    return {
        /** @param {{state: string, text: string}} tray */
        show(tray) {
            made.hidden = tray.state === "" && tray.text === "";
            if (tray.state !== shown) {
                shown = tray.state;
                const { tone, paths } = lookOf(shown);
                made.dataset.tone = tone;
                badge.replaceChildren(icon(paths));
            }
            made.title = tray.state;
            setText(state, `Tray icon, ${tray.state}: `);
            setText(text, tray.text);
        },
        /** @param {boolean} isOpen whether the windows are open */
        showOpen(isOpen) {
            made.setAttribute("aria-expanded", String(isOpen));
        },
    };
}
