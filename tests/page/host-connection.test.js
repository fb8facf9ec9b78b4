import assert from "node:assert/strict";
import { test } from "node:test";

import { beginning } from "./support/host-entries.js";
import { hello, useHostPage } from "./support/host-page.js";
import { active, toast, unenrolled } from "./support/host-screens.js";

const shown = useHostPage();

const phase = () => shown.page.locator("#connection").getAttribute("data-phase");
const words = () => shown.page.locator("#connection-text").innerText();
const inPhase = (name) => shown.page.locator(`#connection[data-phase=${name}]`).waitFor();

test("the page says which module it shows", async () => {
    await shown.load();
    assert.equal(await shown.page.title(), "Wren Gate · Reference host");
    assert.equal(await shown.page.locator("#module").innerText(), "Wren Gate 5.1.11.2143 · C++ interface · stand-in service");
    assert.equal(await words(), "Connected");
});

test("a connection that breaks off is made anew, and the page shows the state of then", async () => {
    await shown.load({ screen: unenrolled(), hello: hello({ entries: beginning() }) });
    shown.told.screen = active();
    shown.told.hello = hello();
    await shown.host.goAway();
    await inPhase("lost");
    assert.equal(await words(), "Connection lost. Trying again");
    await shown.host.comeBack();
    await inPhase("live");
    await shown.page.getByText("Wren Gate is active.", { exact: true }).first().waitFor();
    await shown.page.getByText("Nothing yet").waitFor();
});

test("while there is no connection a press says so", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.host.goAway();
    await inPhase("lost");
    await shown.button("Enroll").click();
    assert.equal(await shown.page.getByRole("alert").innerText(), "There is no connection to the host.");
    await shown.host.comeBack();
    await inPhase("live");
});

test("a request that the break has swallowed says so", async () => {
    await shown.load({ screen: unenrolled() });
    shown.host.refusals.press = null;
    await shown.button("Enroll").click();
    await shown.host.next();
    shown.host.breakOff();
    await shown.page.getByRole("alert").waitFor();
    assert.equal(await shown.page.getByRole("alert").innerText(), "The connection closed before the host answered.");
});

test("a host that says goodbye is not called again until the user wants it", async () => {
    await shown.load({ screen: active() });
    await shown.say({ type: "goodbye", reason: "The program was interrupted." });
    shown.host.hangUp();
    assert.equal(await words(), "The host has ended. The program was interrupted.");
    assert.equal(await phase(), "ended");
    await shown.button("Connect").click();
    await inPhase("live");
    assert.equal(await shown.button("Connect").isVisible(), false);
});

test("toasts from before a break are old", async () => {
    await shown.load({ screen: active() });
    shown.told.screen = active({ toasts: [toast(5, "Meanwhile")] });
    shown.host.breakOff();
    await inPhase("lost");
    await inPhase("live");
    await shown.settle();
    assert.equal(await shown.page.locator(".toast").count(), 0);
});

test("the recording is a download", async () => {
    await shown.load();
    const waiting = shown.page.waitForEvent("download");
    await shown.page.getByRole("link", { name: "Save recording" }).click();
    const download = await waiting;
    assert.equal(download.suggestedFilename(), "session.jsonl");
    assert.equal(download.url(), `${shown.host.address}session.jsonl`);
});

test("a message of a later kind does no harm", async () => {
    await shown.load({ screen: active() });
    await shown.say({ type: "something", of: "later" });
    await shown.say({ type: "constructor" });
    assert.equal(await phase(), "live");
});

test("the module's C interface is told", async () => {
    await shown.load({ hello: hello({ module: { ...hello().module, interface: "c" }, stand_in: false }) });
    assert.equal(await shown.page.locator("#module").innerText(), "Wren Gate 5.1.11.2143 · C interface");
});
