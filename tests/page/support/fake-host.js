/**
 * A host that runs no module: it serves the page as the real one does, says what a test tells it to say, and keeps
 * what the page asks for.
 */
import { readFile } from "node:fs/promises";
import { createServer } from "node:http";
import { dirname, extname, join, normalize } from "node:path";
import { fileURLToPath } from "node:url";

import { Socket } from "./socket.js";

const host = join(dirname(fileURLToPath(import.meta.url)), "../../../host");
const token = "/4f1c";

const types = { ".html": "text/html", ".css": "text/css", ".js": "text/javascript", ".svg": "image/svg+xml" };

const policyOf = (port) =>
    [
        "default-src 'none'",
        "script-src 'self'",
        "style-src 'self'",
        "img-src 'self'",
        `connect-src 'self' ws://127.0.0.1:${port}`,
        "frame-src 'self'",
        "base-uri 'none'",
        "form-action 'none'",
        "frame-ancestors 'none'",
        // With this on, text that is made markup or code anywhere in the page throws.
        "require-trusted-types-for 'script'",
        "trusted-types 'none'",
    ].join("; ");

const framedPolicy = "default-src 'none'; style-src 'self'; script-src 'self'; img-src 'self'; form-action 'self'; frame-ancestors 'self'";

const loginPage =
    "<!doctype html><html lang=en><title>Sign in</title><h1>Example Corp</h1><form method=post>" +
    "<label>Name <input name=name></label> <label>Password <input name=password type=password></label> " +
    "<button>Sign in</button></form>";

export class FakeHost {
    /** Requests of all pages, in order. */
    requests = [];
    /** Answers by the request's "do": a text refuses it. */
    refusals = {};
    #server;
    #sockets = new Set();
    #waiting = [];
    #greeting = () => [];

    static async start() {
        const made = new FakeHost();
        await made.#listen(0);
        return made;
    }

    /** @param {() => object[]} greeting what every new page is told first */
    greet(greeting) {
        this.#greeting = greeting;
    }

    get address() {
        return `http://127.0.0.1:${this.port}${token}/`;
    }

    /** Says something to every page. */
    say(...messages) {
        for (const socket of this.#sockets) {
            messages.forEach((message) => socket.send(message));
        }
    }

    /** The next request that no test has looked at. */
    next() {
        if (this.requests.length > 0) {
            return Promise.resolve(this.requests.shift());
        }
        return new Promise((resolve) => this.#waiting.push(resolve));
    }

    /** Breaks every connection off; pages may come back. */
    breakOff() {
        this.#sockets.forEach((socket) => socket.break());
        this.#sockets.clear();
    }

    hangUp() {
        this.#sockets.forEach((socket) => socket.close());
        this.#sockets.clear();
    }

    async close() {
        this.hangUp();
        this.#server.closeAllConnections?.();
        await new Promise((resolve) => this.#server.close(resolve));
    }

    /** Gone from its port, until `comeBack`. */
    async goAway() {
        this.breakOff();
        await this.close();
    }

    comeBack() {
        return this.#listen(this.port);
    }

    async #listen(port) {
        this.#server = createServer((request, response) => this.#serve(request, response));
        this.#server.on("upgrade", (request, stream) => this.#open(request, stream));
        await new Promise((resolve) => this.#server.listen(port, "127.0.0.1", resolve));
        this.port = this.#server.address().port;
    }

    #open(request, stream) {
        if (new URL(request.url, "http://localhost").pathname !== `${token}/live`) {
            stream.destroy();
            return;
        }
        const socket = new Socket(request, stream, (text) => this.#take(socket, JSON.parse(text)));
        stream.on("close", () => this.#sockets.delete(socket));
        this.#sockets.add(socket);
        this.#greeting().forEach((message) => socket.send(message));
    }

    #take(socket, request) {
        const { id, ...asked } = request;
        const refusal = this.refusals[asked.do];
        if (refusal !== null) {
            socket.send({ type: "reply", id, ...(refusal === undefined ? {} : { error: refusal }) });
        }
        const waiting = this.#waiting.shift();
        if (waiting) {
            waiting(asked);
        } else {
            this.requests.push(asked);
        }
    }

    async #serve(request, response) {
        const { pathname } = new URL(request.url, "http://localhost");
        const path = pathname.startsWith(`${token}/`) ? pathname.slice(token.length + 1) : null;
        try {
            if (path?.startsWith("browser/")) {
                response.writeHead(200, { "Content-Type": "text/html", "Content-Security-Policy": framedPolicy });
                response.end(loginPage);
                return;
            }
            if (path === "session.jsonl") {
                response.writeHead(200, { "Content-Type": "application/jsonl" }).end('{"do":"session","format":1}\n');
                return;
            }
            const file = path === "" ? "app/index.html" : normalize(path);
            const body = await readFile(join(host, file));
            const policy = file.startsWith("pages/") ? framedPolicy : policyOf(this.port);
            response.writeHead(200, {
                "Content-Type": `${types[extname(file)] ?? "text/html"}; charset=utf-8`,
                "Content-Security-Policy": policy,
                "X-Content-Type-Options": "nosniff",
                "Cache-Control": "max-age=3600", // unlike the real one: a browser loads the page for hundreds of tests
            });
            response.end(body);
        } catch {
            response.writeHead(404).end();
        }
    }
}
