/**
 * Reads the machine's own trace out of the log lines: which event came last, and which transition was taken last.
 *
 * @typedef {{event: string, from: string, to: string}} Step
 */
const line = /^\[(?:struct |class )?\w+\]\[(process_event|transition)\] (.*)$/;
const change = /^(?:struct |class )?(\w+) -> (?:struct |class )?(\w+)$/;

// The events that the machine raises by itself have names too long to read.
const plainNames = [
    [/\banonymous$/, "completion"],
    [/\bon_entry</, "start"],
    [/\bexception<(?:struct |class )?(\w+).*$/, "exception<$1>"],
];

export class Trail {
    #event = "";
    /** @type {Map<string, Step>} by the state that was reached or left */
    #byState = new Map();
    /** @type {Step|null} */
    last = null;

    /** @param {import("../core/protocol.js").Entry[]} entries */
    add(entries) {
        for (const { out, message } of entries) {
            const found = out === "log" && message !== undefined ? line.exec(message) : null;
            if (found?.[1] === "process_event") {
                this.#event = plainName(found[2]);
            } else if (found) {
                this.#take(change.exec(found[2]));
            }
        }
    }

    #take(states) {
        if (states !== null) {
            this.last = { event: this.#event, from: states[1], to: states[2] };
            this.#byState.set(this.last.to, this.last);
        }
    }

    /**
     * The last step that led to one of these states.
     * @param {string} state where a region is now
     * @returns {Step|null}
     */
    stepTo(state) {
        return this.#byState.get(state) ?? null;
    }
}

function plainName(text) {
    for (const [pattern, name] of plainNames) {
        const found = pattern.exec(text);
        if (found) {
            return found[0].replace(pattern, name);
        }
    }
    return text.replace(/^(?:struct|class) /, "");
}
