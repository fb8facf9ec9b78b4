/**
 * Toasts: small notifications that go by themselves, unless the user is at them.
 */
import { button, element, icon } from "../core/dom.js";
import { icons } from "../core/icons.js";
import { isShown } from "./controls.js";

const lifetime = 9000;
const most = 4;

/**
 * @param {HTMLElement} region
 * @param {(control: import("../core/protocol.js").Control) => void} press
 */
export function useToasts(region, press) {
    const list = element("ol", { class: "toast-list", role: "list", "aria-live": "polite", "aria-relevant": "additions" });
    region.append(list);

    /** The highest number that was seen; null until the first screen, whose toasts are old. */
    let seen = null;

    function show(toast) {
        const buttons = toast.controls
            .filter((control) => control.element === "button" && isShown(control))
            .map((control) => actionOf(control));
        const made = element(
            "li",
            { class: "toast", "data-popup": toast.id },
            icon(icons.bell),
            element(
                "div",
                { class: "toast-texts" },
                element("p", { class: "toast-title", dir: "auto" }, toast.title),
                ...toast.texts.map((text) => element("p", { dir: "auto" }, text)),
                buttons.length > 0 ? element("div", { class: "toast-buttons" }, ...buttons) : null,
            ),
            button({ class: "plain", "aria-label": "Dismiss" }, () => made.remove(), icon(icons.close)),
        );
        list.append(made);
        while (list.children.length > most) {
            list.firstElementChild.remove();
        }
        retire(made);

        function actionOf(control) {
            const action = button({ class: "action", "data-control": control.id }, () => {
                press(control);
                made.remove();
            }, control.attributes.label ?? "");
            action.disabled = control.disabled;
            return action;
        }
    }

    return {
        /** What comes next is the state of a host that was not seen before. */
        startAnew() {
            seen = null;
        },
        /** @param {import("../core/protocol.js").Screen} screen */
        show({ toasts }) {
            const newest = Math.max(0, ...toasts.map(({ number }) => number));
            if (seen !== null) {
                toasts.filter(({ number }) => number > seen).forEach(show);
            }
            seen = newest;
        },
    };
}

// Someone who reads it, or is about to press its button, keeps it.
function retire(toast) {
    let timer = 0;
    const start = () => {
        clearTimeout(timer);
        timer = setTimeout(() => toast.remove(), lifetime);
    };
    const hold = () => clearTimeout(timer);
    toast.addEventListener("pointerenter", hold);
    toast.addEventListener("focusin", hold);
    toast.addEventListener("pointerleave", start);
    toast.addEventListener("focusout", start);
    start();
}
