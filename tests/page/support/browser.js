/**
 * A real browser with the page open in it, a new one for each test.
 */
import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach } from "node:test";
import { pathToFileURL } from "node:url";

import { chromium } from "playwright-core";

import { pages, serve } from "./server.js";

/** A document on disk with the page in a frame named "local". */
export const hostOnDisk = new URL("./host-on-disk.html", import.meta.url).href;

// Chromium as a package of the system, the build without windows, which starts sooner; WREN_CHROMIUM names another.
// Nothing is to be fetched or looked up while the tests run.
export const launchOptions = {
    executablePath: process.env.WREN_CHROMIUM ?? "/usr/bin/chromium-headless-shell",
    args: [
        "--no-sandbox",
        "--disable-gpu",
        "--disable-quic",
        "--no-first-run",
        "--disable-background-networking",
        "--disable-component-update",
        "--disable-sync",
    ],
};

/** Base64 of a payload's UTF-8 JSON, as the module writes it. */
export function encode(payload) {
    return Buffer.from(JSON.stringify(payload), "utf8").toString("base64");
}

/**
 * Opens the page once for the file and loads it anew before each test; every test also fails when the page threw
 * an error, broke its content security policy or asked for anything but its own files.
 * @param {object} [contextOptions] of the browser context
 * @param {object} [site]
 * @param {Record<string, string>} [site.extra] further documents by path, as HTML
 * @param {string} [site.path] the document to open, on the server or as a whole address
 * @param {string} [site.frame] name of the frame in it where the page stands
 * @param {boolean} [site.keep] not to load anew, for tests of functions that keep nothing
 * @returns {ShownPage}
 */
export function usePage(contextOptions = {}, { extra = {}, path = "/wren/v1/index.html", frame, keep = false } = {}) {
    const shown = new ShownPage();
    let browser;
    before(async () => {
        browser = await chromium.launch(launchOptions);
        shown.server = await serve(extra);
        shown.frame = frame;
        await shown.open(browser, contextOptions);
        await shown.load(path);
    });
    beforeEach(async () => {
        if (!keep) {
            await shown.load(path);
        }
    });
    afterEach(() => shown.check());
    after(async () => {
        await browser?.close();
        await shown.server?.close();
    });
    return shown;
}

/** The page as the tests drive it: payloads in, events out, and what stands on it. */
export class ShownPage {
    async open(browser, contextOptions) {
        this.faults = [];
        this.context = await browser.newContext({ viewport: { width: 560, height: 720 }, reducedMotion: "reduce", ...contextOptions });
        this.context.on("request", (request) => this.#watch(request));
        this.page = await this.context.newPage();
        this.page.on("pageerror", (error) => this.faults.push(`error: ${error.message}`));
        await this.page.addInitScript(() => {
            window.sent = [];
            window.violations = [];
            window.addEventListener("kestrel-suite-event", ({ detail }) => window.sent.push(detail));
            document.addEventListener("securitypolicyviolation", ({ violatedDirective, blockedURI }) =>
                window.violations.push(`${violatedDirective} ${blockedURI}`),
            );
        });
    }

    async load(path) {
        await this.page.goto(new URL(path, this.server.origin).href);
        this.view = this.frame ? this.page.frame(this.frame) : this.page.mainFrame();
    }

    async check() {
        const faults = this.faults.splice(0);
        const violations = await this.view.evaluate(() => window.violations);
        assert.deepEqual([...faults, ...violations], []);
    }

    /** Hands the page one payload; the page is up to date when this is done. */
    show(payload) {
        return this.dispatch(encode(payload));
    }

    /** Hands the page one detail as it is. */
    dispatch(detail) {
        return this.view.evaluate((text) => {
            window.dispatchEvent(new CustomEvent("update-flow", { detail: text }));
        }, detail);
    }

    /** The events that the page has sent to the host so far. */
    sent() {
        return this.view.evaluate(() => window.sent);
    }

    /** Which of its views the page shows. */
    where() {
        return this.view.locator("main > article:not([aria-hidden])").getAttribute("data-page");
    }

    heading() {
        return this.view.locator("h1").innerText();
    }

    texts() {
        return this.view.locator("main p").allInnerTexts();
    }

    fault() {
        return this.view.locator("#fault").innerText();
    }

    announced() {
        return this.view.locator("#announcer").textContent();
    }

    press(name) {
        return this.view.getByRole("button", { name, exact: true }).click();
    }

    /** What has the focus: a control's name on the page, "heading", or "body". */
    focused() {
        return this.view.evaluate(() => {
            const focused = document.activeElement;
            return focused.dataset.control ?? (focused.id || focused.localName);
        });
    }

    /** Runs a function of one of the page's own parts, inside the page. */
    call(part, name, ...values) {
        return this.page.evaluate(
            ([of, called, given]) => {
                try {
                    return { value: wrenPage[of][called](...given) };
                } catch (error) {
                    return { error: error.message, kind: error.name };
                }
            },
            [part, name, values],
        );
    }

    #watch(request) {
        const own = [this.server.origin, pathToFileURL(pages), hostOnDisk];
        if (!own.some((place) => request.url().startsWith(`${place}`))) {
            this.faults.push(`request: ${request.url()}`);
        }
    }
}
