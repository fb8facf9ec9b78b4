import assert from "node:assert/strict";
import { after, before, test } from "node:test";

import { encode, usePage } from "./support/browser.js";
import { framingHost, message, updateFlow } from "./support/messages.js";
import { alert, alerts, posture, reenroll } from "./support/payloads.js";
import { serve } from "./support/server.js";

// A host that shows the page in a frame, and beside it a frame of the same origin that is not the page's parent.
const shown = usePage(
    {},
    {
        path: "/host.html",
        extra: {
            "/host.html": `${framingHost}<iframe name="stranger" src="/stranger.html"></iframe>`,
            "/stranger.html": "<!doctype html><title>Stranger</title>",
        },
    },
);

let elsewhere;
before(async () => {
    // A second origin, whose page frames ours.
    elsewhere = await serve({
        "/host.html": `<!doctype html><title>Elsewhere</title><iframe name="local" width="520" height="600"></iframe>`,
    });
});
after(() => elsewhere.close());

const local = () => shown.page.frame("local");
const heading = () => local().locator("h1").innerText();

test("a message of the parent is taken as an update", async () => {
    await message(shown.page, updateFlow(alerts(posture)));
    assert.equal(await heading(), "Plover Desktop error");
});

test("a broken message of the parent is a broken update", async () => {
    await message(shown.page, { kind: "update-flow", detail: "???" });
    assert.equal(
        await local().locator("#fault").innerText(),
        "The latest update could not be read. Waiting for the next one.",
    );
});

test("a message of another frame is not taken, not even from the same origin", async () => {
    await message(shown.page.frame("stranger"), updateFlow(alerts(posture)));
    assert.equal(await heading(), "One moment, please");
});

test("a message of the page to itself is not taken", async () => {
    await message(local(), updateFlow(alerts(posture)));
    assert.equal(await heading(), "One moment, please");
});

for (const data of [{ kind: "other", detail: "" }, "update-flow", null, 7, [], { detail: encode(alerts(posture)) }]) {
    test(`the message ${JSON.stringify(data)} means nothing`, async () => {
        await message(shown.page, data);
        assert.equal(await heading(), "One moment, please");
        assert.equal(await local().locator("#fault").innerText(), "");
    });
}

test("an action's event goes to the parent, and to the page's own window", async () => {
    const received = shown.page.evaluate(
        () => new Promise((resolve) => window.addEventListener("message", ({ data, origin }) => resolve({ data, origin }))),
    );
    await message(shown.page, updateFlow(alerts(reenroll)));
    await local().locator("[data-control=action-0]").click();
    await local().locator("[data-control=send]").click();
    assert.deepEqual(await received, {
        data: { kind: "kestrel-suite-event", type: "re-enroll", value: "enrollment-7" },
        origin: shown.server.origin,
    });
    assert.deepEqual(await local().evaluate(() => window.sent), [{ type: "re-enroll", value: "enrollment-7" }]);
});

test("a new check goes to the parent", async () => {
    const received = shown.page.evaluate(
        () => new Promise((resolve) => window.addEventListener("message", ({ data }) => resolve(data))),
    );
    await message(shown.page, updateFlow(alerts(posture)));
    await local().locator("[data-control=check]").click();
    assert.deepEqual(await received, { kind: "kestrel-suite-event", type: "posture-update", value: "" });
});

test("an update leaves the focus with the host", async () => {
    await shown.page.locator("#outside").focus();
    await message(shown.page, updateFlow(alerts(posture)));
    await message(shown.page, updateFlow(alerts(alert("Another", "", ""))));
    assert.equal(await heading(), "Another");
    assert.equal(await shown.page.evaluate(() => document.activeElement.id), "outside");
});

test("a parent of another origin is neither heard nor told anything", async () => {
    const context = await shown.context.browser().newContext();
    const page = await context.newPage();
    await page.goto(`${elsewhere.origin}/host.html`);
    await page.evaluate(async (address) => {
        window.heard = [];
        window.addEventListener("message", ({ data }) => window.heard.push(data));
        const frame = document.querySelector("iframe");
        const loaded = new Promise((resolve) => frame.addEventListener("load", resolve));
        frame.src = address;
        await loaded;
    }, `${shown.server.origin}/wren/v1/index.html`);
    const inner = page.frame("local");
    await inner.evaluate(() => {
        window.passed = new Promise((resolve) => window.addEventListener("message", ({ data }) => data === "last" && resolve()));
    });
    await page.evaluate((data) => {
        frames.local.postMessage(data, "*");
        frames.local.postMessage("last", "*");
    }, updateFlow(alerts(posture)));
    await inner.evaluate(() => window.passed);
    assert.equal(await inner.locator("h1").innerText(), "One moment, please");

    // The page's own events still go out inside its frame, where only its embedder's scripts could listen.
    await inner.evaluate((detail) => window.dispatchEvent(new CustomEvent("update-flow", { detail })), encode(alerts(posture)));
    await inner.locator("[data-control=check]").click();
    await inner.evaluate(() => window.parent.postMessage("last", "*"));
    await page.waitForFunction(() => window.heard.includes("last"));
    assert.deepEqual(await page.evaluate(() => window.heard), ["last"]);
    await context.close();
});

test("outside a frame no message is an update", async () => {
    await shown.load("/wren/v1/index.html");
    await shown.page.evaluate(async (data) => {
        const passed = new Promise((resolve) => window.addEventListener("message", ({ data: seen }) => seen === "last" && resolve()));
        window.postMessage(data, "*");
        window.postMessage("last", "*");
        await passed;
    }, updateFlow(alerts(posture)));
    assert.equal(await shown.where(), "waiting");
});
