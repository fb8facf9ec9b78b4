/**
 * Whether the windows are open: the module hides and shows them by its notices, the user by the tray icon, and the
 * last word counts.
 */
const told = /<application\b[^>]*\bshow="(true|false)"/;

export class WindowState {
    #isOpen = true;
    #last = null;
    #tell;

    /** @param {(isOpen: boolean) => void} tell called when it changes, and once to begin with */
    constructor(tell) {
        this.#tell = tell;
        queueMicrotask(() => tell(this.#isOpen));
    }

    /** The user's word. */
    toggle() {
        this.#set(!this.#isOpen);
    }

    /**
     * The state that the notices have added up to.
     * @param {"shown"|"hidden"|""} state
     */
    take(state) {
        if (state !== this.#last) {
            this.#last = state;
            this.#set(state !== "hidden");
        }
    }

    /**
     * Notices one by one: to be hidden once more means something to a window that the user has opened since.
     * @param {import("../core/protocol.js").Entry[]} entries
     */
    note(entries) {
        for (const { out, xml = "" } of entries) {
            const found = out === "notice" ? told.exec(xml) : null;
            if (found) {
                this.#set(found[1] === "true");
            }
        }
    }

    #set(isOpen) {
        if (isOpen !== this.#isOpen) {
            this.#isOpen = isOpen;
            this.#tell(isOpen);
        }
    }
}
