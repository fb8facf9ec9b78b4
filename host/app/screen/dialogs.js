/**
 * Dialogs that the module asks for, such as the one for errors. They are modal: until the user has answered, nothing
 * else on the page can be used. They go when the module takes them away, not before.
 *
 * @typedef {import("../core/protocol.js").Popup} Popup
 */
import { button, element, icon, setText } from "../core/dom.js";
import { icons } from "../core/icons.js";
import { keepChildren } from "../core/keyed.js";
import { showControls } from "./controls.js";

/**
 * @param {HTMLElement} around
 * @param {object} ways
 * @param {(control: import("../core/protocol.js").Control) => void} ways.press
 * @param {(popup: Popup) => void} ways.close
 */
export function useDialogs(around, { press, close }) {
    const layer = element("div", { class: "dialogs" });
    around.append(layer);
    let returnTo = null;

    function make(popup) {
        const title = element("h3", { class: "dialog-title", id: `title-${popup.id}`, dir: "auto" });
        const texts = element("div", { class: "dialog-texts", id: `texts-${popup.id}` });
        const buttons = element("div", { class: "dialog-buttons" });
        const askToClose = () => close(popup);
        const made = element(
            "dialog",
            { class: "dialog", "aria-labelledby": title.id, "aria-describedby": texts.id, "data-popup": popup.id },
            element(
                "div",
                { class: "dialog-head" },
                title,
                button({ class: "plain", "aria-label": "Close" }, askToClose, icon(icons.close)),
            ),
            texts,
            buttons,
        );
        made.addEventListener("keydown", (event) => keyInDialog(event, made, askToClose));
        made.addEventListener("cancel", (event) => event.preventDefault());
        return made;
    }

    function update(made, popup) {
        setText(made.querySelector(".dialog-title"), popup.title);
        keepChildren(made.querySelector(".dialog-texts"), popup.texts.map((text, index) => ({ text, index })), {
            key: ({ index }) => String(index),
            make: () => element("p", { dir: "auto" }),
            update: (line, { text }) => setText(line, text),
        });
        showControls(made.querySelector(".dialog-buttons"), popup.controls, press);
    }

    return {
        /** @param {Popup[]} popups those that are dialogs */
        show(popups) {
            const wasOpen = layer.childElementCount > 0;
            if (!wasOpen && popups.length > 0) {
                returnTo = document.activeElement;
            }
            keepChildren(layer, popups, { key: ({ id }) => id, make, update });
            for (const dialog of layer.children) {
                if (!dialog.open) {
                    dialog.showModal();
                    (dialog.querySelector(".dialog-buttons button") ?? dialog).focus();
                }
            }
            if (wasOpen && popups.length === 0) {
                (returnTo?.isConnected && !returnTo.disabled ? returnTo : document.querySelector("#screen-heading")).focus();
            }
        },
    };
}

// Escape asks the module; the browser would take the dialog away by itself. And Tab goes round.
function keyInDialog(event, dialog, askToClose) {
    if (event.key === "Escape") {
        event.preventDefault();
        if (!event.repeat) {
            askToClose();
        }
        return;
    }
    if (event.key === "Tab") {
        const stops = [...dialog.querySelectorAll("button:enabled, a[href], input:enabled")];
        const edge = event.shiftKey ? stops[0] : stops.at(-1);
        if (document.activeElement === edge || document.activeElement === dialog) {
            event.preventDefault();
            (event.shiftKey ? stops.at(-1) : stops[0])?.focus();
        }
    }
}
