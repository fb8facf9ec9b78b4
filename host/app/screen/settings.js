/**
 * The groups of the advanced window: enrollment, configuration sync, and whatever else a module sets up.
 */
import { element } from "../core/dom.js";
import { keepChildren } from "../core/keyed.js";
import { showControls } from "./controls.js";

/**
 * @param {HTMLElement} panel
 * @param {(control: import("../core/protocol.js").Control) => void} press
 */
export function useSettings(panel, press) {
    const waiting = element("p", { class: "empty" }, "The module has not set up any group yet.");
    const groups = element("div", { class: "groups" });
    panel.append(groups, waiting);

    return {
        /** @param {import("../core/protocol.js").Screen} screen */
        show({ parts }) {
            const shown = parts.filter(({ kind }) => kind === "group");
            waiting.hidden = shown.length > 0;
            keepChildren(groups, shown, {
                key: ({ controls }) => controls[0]?.id ?? "",
                make: () => element("section", { class: "group" }),
                update: (made, { title, controls }) => {
                    made.setAttribute("aria-label", title);
                    showControls(made, controls, press);
                },
            });
        },
    };
}
