/**
 * The real program with the real module and the stand-in service, and viewers of it in a real browser.
 */
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { existsSync } from "node:fs";
import { mkdtemp, rm, writeFile } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, afterEach, before, beforeEach } from "node:test";
import { fileURLToPath } from "node:url";

import { chromium } from "playwright-core";

import { launchOptions } from "./browser.js";

const builds = ["release", "dev"].map((preset) =>
    fileURLToPath(new URL(`../../../build/${preset}/bin/wren-host`, import.meta.url)),
);
const program = process.env.WREN_HOST_PROGRAM ?? builds.find(existsSync) ?? builds[0];

/** Quick, but with time to act while a login is open or a registration runs. */
const delays = {
    first_status: 0,
    status_interval: 0,
    enrollment_started: 0,
    authentication_request: 50,
    registration: 400,
    cancellation: 50,
    unenrollment_started: 0,
    unenrollment: 200,
    config_sync: 50,
    posture_report: 50,
    dataplane_reply: 50,
};

/**
 * Starts the program anew for each test, with one viewer. Every test also fails when a viewer's page threw an error,
 * broke its policy or asked for anything beyond the program.
 * @returns {RealHost}
 */
export function useRealHost() {
    const host = new RealHost();
    before(async () => {
        host.browser = await chromium.launch(launchOptions);
        host.folder = await mkdtemp(join(tmpdir(), "wren-journey-"));
    });
    beforeEach(() => host.prepare());
    afterEach(() => host.end());
    after(async () => {
        await host.browser?.close();
        await rm(host.folder, { recursive: true, force: true });
    });
    return host;
}

export class RealHost {
    prepare() {
        this.viewers = [];
        this.faults = [];
    }

    /** Starts the program on a scenario and opens the first viewer. */
    async start(scenario = {}) {
        const file = join(this.folder, "scenario.json");
        await writeFile(file, JSON.stringify({ ...scenario, delays: { ...delays, ...scenario.delays } }));
        this.process = spawn(program, ["serve", "--scenario", file], { stdio: ["ignore", "pipe", "inherit"] });
        this.ended = new Promise((resolve) => this.process.once("exit", (code) => resolve(code)));
        this.address = await new Promise((resolve, reject) => {
            this.process.once("error", reject);
            this.process.stdout.once("data", (bytes) => resolve(String(bytes).trim()));
        });
        return this.view();
    }

    /** Opens one more viewer. */
    async view() {
        const viewer = await Viewer.open(this.browser, this.address, this.faults);
        this.viewers.push(viewer);
        return viewer;
    }

    /** Interrupts the program, as a terminal does. */
    interrupt() {
        this.process.kill("SIGINT");
        return this.ended;
    }

    /**
     * Runs a recording against the module, without a viewer.
     * @returns {Promise<{code: number, said: string}>}
     */
    async replay(recording) {
        const file = join(this.folder, "recording.jsonl");
        await writeFile(file, recording);
        const replaying = spawn(program, ["replay", file], { stdio: ["ignore", "pipe", "inherit"] });
        let said = "";
        replaying.stdout.on("data", (bytes) => (said += bytes));
        const code = await new Promise((resolve) => replaying.once("close", resolve));
        return { code, said };
    }

    async end() {
        await Promise.all(this.viewers.map((viewer) => viewer.close()));
        if (this.process) {
            const code = await this.interrupt();
            this.process = null;
            assert.equal(code, 0, "the program's exit code");
        }
        assert.deepEqual(this.faults, []);
    }
}

/** One page, and what its user does. */
export class Viewer {
    static async open(browser, address, faults) {
        const viewer = new Viewer();
        viewer.context = await browser.newContext({ viewport: { width: 1280, height: 900 }, reducedMotion: "reduce" });
        viewer.context.on("request", (request) => {
            if (!request.url().startsWith(address)) {
                faults.push(`request: ${request.url()}`);
            }
        });
        viewer.page = await viewer.context.newPage();
        viewer.page.on("pageerror", (error) => faults.push(`error: ${error.message}`));
        viewer.page.on("console", (line) => /Content Security Policy/.test(line.text()) && faults.push(line.text()));
        viewer.page.setDefaultTimeout(15000);
        await viewer.page.goto(address);
        await viewer.page.locator("#connection[data-phase=live]").waitFor();
        return viewer;
    }

    close() {
        return this.context.close();
    }

    button(name, within = this.page) {
        return within.getByRole("button", { name, exact: true });
    }

    press(name, within = this.page) {
        return this.button(name, within).click();
    }

    tab(name) {
        return this.page.getByRole("tab", { name, exact: true }).click();
    }

    get tile() {
        return this.page.locator("#main-window");
    }

    /** The login page. */
    get login() {
        return this.page.frameLocator("[data-shows=login] .browser-frame");
    }

    /** The module's own page. */
    get local() {
        return this.page.frameLocator("[data-shows=local] .browser-frame");
    }

    /** Waits until the tile's status line reads so. */
    status(text) {
        return this.tile.getByText(text, { exact: true }).waitFor();
    }

    /** Waits until there is no browser popup. */
    noBrowser() {
        return this.page.waitForFunction(() => document.querySelector(".browser") === null);
    }

    async logIn(password = "wren") {
        await this.login.getByLabel("User name").fill("robin");
        await this.login.getByLabel("Password").fill(password);
        await this.login.getByRole("button", { name: "Log in" }).click();
    }

    /** Turns knobs of the service, through the console's editor. */
    async set(knobs) {
        await this.tab("Service");
        const form = this.page.getByRole("form", { name: "Scenario as JSON" });
        await form.getByRole("textbox").fill(JSON.stringify(knobs));
        await this.press("Set", form);
        await form.getByText("Done.").waitFor();
        await this.tab("Trace");
    }

    /** The trace's rows that hold a text, as "badge text". */
    async traced(text) {
        await this.tab("Trace");
        await this.page.getByRole("searchbox").fill(text);
        await this.page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
        const rows = await this.page
            .locator(".row")
            .evaluateAll((all) => all.map((row) => `${row.querySelector(".kind").textContent} ${row.querySelector(".row-text").textContent}`));
        await this.page.getByRole("searchbox").fill("");
        return rows;
    }
}
