/**
 * The way to the host and back: one socket, which is opened again when it closes.
 *
 * @typedef {object} Phase how the connection stands
 * @property {"connecting"|"live"|"lost"|"ended"} name
 * @property {string} reason why it ended, in the host's words; empty otherwise
 */

/** A request that was refused or could not be sent. Its message is for the user. */
export class RequestError extends Error {
    name = "RequestError";
}

const firstWait = 250;
const longestWait = 4000;

export class Connection {
    #address;
    #take;
    #tell;
    #socket = null;
    #timer = null;
    #wait = firstWait;
    #nextId = 1;
    #phase = { name: "connecting", reason: "" };
    /** @type {Map<number, {resolve: () => void, reject: (error: RequestError) => void}>} */
    #waiting = new Map();

    /**
     * @param {string} address of the socket
     * @param {object} listeners
     * @param {(message: {type: string}) => void} listeners.take called with every message but replies
     * @param {(phase: Phase) => void} listeners.tell called when the phase changes
     */
    constructor(address, { take, tell }) {
        this.#address = address;
        this.#take = take;
        this.#tell = tell;
    }

    /** Opens the socket, also one that has ended. */
    open() {
        clearTimeout(this.#timer);
        this.#enter(this.#phase.name === "lost" ? "lost" : "connecting");
        const socket = new WebSocket(this.#address);
        this.#socket = socket;
        socket.addEventListener("message", ({ data }) => this.#receive(data));
        socket.addEventListener("close", () => this.#closed(socket));
    }

    /**
     * Asks the host for something.
     * @param {string} what the request's "do"
     * @param {Record<string, unknown>} [fields]
     * @returns {Promise<void>}
     * @throws {RequestError} through the promise
     */
    request(what, fields = {}) {
        if (this.#phase.name !== "live") {
            return Promise.reject(new RequestError("There is no connection to the host."));
        }
        const id = this.#nextId++;
        this.#socket.send(JSON.stringify({ id, do: what, ...fields }));
        return new Promise((resolve, reject) => this.#waiting.set(id, { resolve, reject }));
    }

    #receive(data) {
        const message = JSON.parse(data);
        if (message.type === "reply") {
            this.#answer(message);
            return;
        }
        if (message.type === "hello") {
            this.#wait = firstWait;
            this.#enter("live");
        } else if (message.type === "goodbye") {
            this.#enter("ended", message.reason);
        }
        this.#take(message);
    }

    #answer({ id, error }) {
        const waiting = this.#waiting.get(id);
        this.#waiting.delete(id);
        if (error === undefined) {
            waiting?.resolve();
        } else {
            waiting?.reject(new RequestError(error));
        }
    }

    #closed(socket) {
        if (socket !== this.#socket) {
            return;
        }
        for (const { reject } of this.#waiting.values()) {
            reject(new RequestError("The connection closed before the host answered."));
        }
        this.#waiting.clear();
        if (this.#phase.name !== "ended") {
            this.#enter("lost");
            this.#timer = setTimeout(() => this.open(), this.#wait);
            this.#wait = Math.min(2 * this.#wait, longestWait);
        }
    }

    #enter(name, reason = "") {
        if (name !== this.#phase.name || reason !== this.#phase.reason) {
            this.#phase = { name, reason };
            this.#tell(this.#phase);
        }
    }
}
