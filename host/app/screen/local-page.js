/**
 * The module's own page in a frame: its payloads go in as messages and its events come out as messages, both within
 * this origin alone.
 */
const inbound = "update-flow";
const outbound = "kestrel-suite-event";

export class LocalPage {
    #frame;
    #isLoaded = false;
    #detail = "";
    #told = 0;
    #waiting = 0;
    #listener;

    /**
     * @param {HTMLIFrameElement} frame that is not loading yet
     * @param {(type: string, value: string) => void} receive called with each event of the page
     */
    constructor(frame, receive) {
        this.#frame = frame;
        frame.addEventListener("load", () => {
            this.#isLoaded = true;
            this.#told = 0;
            this.#send();
        });
        this.#listener = ({ source, origin, data }) => {
            if (source === frame.contentWindow && origin === window.origin && data?.kind === outbound) {
                receive(String(data.type), String(data.value));
            }
        };
        window.addEventListener("message", this.#listener);
    }

    /**
     * Hands the page a payload, unless it has had it.
     * @param {string} detail
     * @param {number} number counts up with every payload
     */
    tell(detail, number) {
        this.#detail = detail;
        this.#waiting = number;
        this.#send();
    }

    /** Hears nothing more. */
    end() {
        window.removeEventListener("message", this.#listener);
    }

    #send() {
        if (this.#isLoaded && this.#detail !== "" && this.#told !== this.#waiting) {
            this.#told = this.#waiting;
            this.#frame.contentWindow.postMessage({ kind: inbound, detail: this.#detail }, window.origin);
        }
    }
}
