/**
 * The page of the host in a real browser, joined to a host that says what a test wants.
 */
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { after, afterEach, before, beforeEach } from "node:test";
import { fileURLToPath } from "node:url";

import { chromium } from "playwright-core";

import { launchOptions } from "./browser.js";
import { FakeHost } from "./fake-host.js";
import { idle, machine } from "./host-machine.js";
import { screen as emptyScreen } from "./host-screens.js";

const schema = JSON.parse(
    await readFile(fileURLToPath(new URL("../../../backend-sim/scenario.schema.json", import.meta.url)), "utf8"),
);

const viewport = { width: 1280, height: 800 };

export const serviceState = (device = {}) => ({
    scenario: { device: { certificate: "ok", enrolled: false, config_sync_failures: 0, ...device }, delays: {}, logins: {}, faults: [] },
    enrollment: null,
    unenrollment: null,
    connections: 1,
    pace: 100,
});

export const hello = (more = {}) => ({
    type: "hello",
    module: {
        identity: "com.norvane.vantor.presentation.quill",
        label: "Wren Gate",
        version: "5.1.11.2143",
        path: "lib/libwren_gate.so",
        interface: "cpp",
    },
    stand_in: true,
    schema,
    machine,
    operations: ["Start", "Stop", "InitiateEnrollment"],
    documents: ["StatusNotification", "EnrollmentStatusNotification", "DataplaneNotification"],
    entries: [],
    ...more,
});

/**
 * Opens one page for the file, and leaves it empty after each test. Every test also fails when the page threw an error,
 * broke its content security policy or asked for anything beyond its own host.
 * @param {object} [contextOptions] of the browser context
 * @param {object} [ways]
 * @param {boolean} [ways.keep] one loaded page for the whole file, for tests of functions that keep nothing
 * @returns {HostPage}
 */
export function useHostPage(contextOptions = {}, { keep = false } = {}) {
    const shown = new HostPage();
    let browser;
    before(async () => {
        browser = await chromium.launch(launchOptions);
        shown.host = await FakeHost.start();
        await shown.open(browser, contextOptions);
        if (keep) {
            await shown.load();
        }
    });
    if (!keep) {
        beforeEach(() => shown.begin());
        afterEach(() => shown.end());
    }
    after(async () => {
        if (keep) {
            await shown.end();
        }
        await browser?.close();
        await shown.host?.close();
    });
    return shown;
}

/** The page as the tests drive it. */
export class HostPage {
    /** What every page is told first, kept up to date by the helpers below. */
    told = {};

    async open(browser, contextOptions) {
        this.context = await browser.newContext({ viewport, reducedMotion: "reduce", ...contextOptions });
        this.context.on("request", (request) => {
            if (!request.url().startsWith(this.host.address)) {
                this.faults.push(`request: ${request.url()}`);
            }
        });
        this.page = await this.context.newPage();
        this.page.on("pageerror", (error) => this.faults.push(`error: ${error.message}`));
        this.page.setDefaultTimeout(8000);
        await this.page.addInitScript(() => {
            window.violations = [];
            document.addEventListener("securitypolicyviolation", ({ violatedDirective, blockedURI }) =>
                window.violations.push(`${violatedDirective} ${blockedURI}`),
            );
        });
        await this.begin();
    }

    async begin() {
        this.faults = [];
        this.told = { hello: hello(), screen: emptyScreen(), machine: idle, service: serviceState() };
        this.host.requests.length = 0;
        this.host.refusals = {};
        this.host.greet(() => [
            this.told.hello,
            { type: "screen", screen: this.told.screen },
            this.told.machine,
            { type: "service", state: this.told.service },
        ]);
        await this.page.setViewportSize(viewport);
        await this.page.emulateMedia({ reducedMotion: "reduce", colorScheme: "light" });
    }

    /** Loads the page and waits until it has been told everything. */
    async load(told = {}) {
        Object.assign(this.told, told);
        await this.page.goto(this.host.address);
        await this.live();
    }

    live() {
        return this.page.locator("#connection[data-phase=live]").waitFor();
    }

    async end() {
        const violations = await this.page.evaluate(() => window.violations).catch(() => []);
        await this.page.goto("about:blank");
        assert.deepEqual([...this.faults, ...violations], []);
    }

    /** Shows a screen; the page has drawn it when this is done. */
    async show(screen) {
        this.told.screen = screen;
        this.host.say({ type: "screen", screen });
        await this.settle();
    }

    async say(...messages) {
        this.host.say(...messages);
        await this.settle();
    }

    /** Until the page has taken everything that was said: it answers a last word that changes nothing. */
    async settle() {
        const number = ++this.settled;
        const heard = this.page.waitForEvent("console", { predicate: (line) => line.text().endsWith(`settle-${number}`) });
        this.host.say({ type: `settle-${number}` });
        await heard;
        await this.page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
    }
    settled = 0;

    button(name, within = this.page) {
        return within.getByRole("button", { name, exact: true });
    }

    /** Runs a function of one of the page's own modules, inside the page. */
    call(module, name, ...values) {
        return this.page.evaluate(
            async ([path, exported, given]) => (await import(path))[exported](...given),
            [`${this.host.address}app/${module}.js`, name, values],
        );
    }

    async tab(name) {
        await this.page.getByRole("tab", { name, exact: true }).click();
    }
}
