/**
 * The message history, the newest message first.
 */
import { timeOfDay } from "../core/clock.js";
import { button, element } from "../core/dom.js";
import { keepChildren } from "../core/keyed.js";

/**
 * @param {HTMLElement} panel
 * @param {() => void} clear
 */
export function useMessages(panel, clear) {
    const waiting = element("p", { class: "empty" }, "No messages.");
    const list = element("ol", { class: "messages", reversed: "" });
    const clearButton = button({ class: "quiet small" }, clear, "Clear messages");
    panel.append(waiting, list, clearButton);

    return {
        /** @param {import("../core/protocol.js").Screen} screen */
        show({ history }) {
            waiting.hidden = history.length > 0;
            clearButton.hidden = history.length === 0;
            keepChildren(list, [...history].reverse(), {
                key: ({ number }) => String(number),
                make: ({ time, text }) =>
                    element(
                        "li",
                        {},
                        element("time", { datetime: new Date(time).toISOString() }, timeOfDay(time)),
                        element("span", { dir: "auto" }, text),
                    ),
                update: () => {},
            });
        },
    };
}
