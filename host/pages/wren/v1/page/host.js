/**
 * The way to the host and back.
 *
 * In: the DOM event "update-flow", its detail the Base64 payload, dispatched on the window or the document. Inside
 * a frame also the message {kind: "update-flow", detail}, from the parent alone and only within one origin.
 *
 * Out: the DOM event "kestrel-suite-event" on the window, its detail {type, value}. Inside a frame also the message
 * {kind: "kestrel-suite-event", type, value} to the parent, delivered only within one origin.
 */
"use strict";
{
    const inbound = "update-flow";
    const outbound = "kestrel-suite-event";

    // A document without an origin of its own (a file, say) can't name whom it trusts, so it exchanges no messages.
    const talksToParent = window.parent !== window && window.origin !== "null";

    /**
     * @param {(detail: unknown) => void} receive called with each detail as it came, unchecked
     */
    function listenToHost(receive) {
        // The capturing listener of the window also sees an event that was dispatched on the document and doesn't
        // bubble.
        window.addEventListener(inbound, (event) => receive(event.detail), { capture: true });
        if (talksToParent) {
            window.addEventListener("message", (event) => {
                const fromParent = event.source === window.parent && event.origin === window.origin;
                if (fromParent && event.data?.kind === inbound) {
                    receive(event.data.detail);
                }
            });
        }
    }

    /**
     * @param {KestrelSuiteEvent} event
     */
    function tellHost({ type, value }) {
        window.dispatchEvent(new CustomEvent(outbound, { detail: { type, value } }));
        if (talksToParent) {
            window.parent.postMessage({ kind: outbound, type, value }, window.origin);
        }
    }

    wrenPage.host = { listenToHost, tellHost };
}
