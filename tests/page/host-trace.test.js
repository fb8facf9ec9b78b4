import assert from "node:assert/strict";
import { test } from "node:test";

import { beginning, burst, log, Recorder, status } from "./support/host-entries.js";
import { hello, useHostPage } from "./support/host-page.js";
import { active } from "./support/host-screens.js";

const shown = useHostPage();

const start = (entries = beginning()) => shown.load({ hello: hello({ entries }), screen: active() });
const list = () => shown.page.getByRole("tree", { name: "Inputs and outputs" });
const detail = () => shown.page.getByRole("region", { name: "Entry", exact: true });
const count = () => shown.page.locator(".count").innerText();
const chip = (label) => shown.page.locator(".chip", { hasText: label });
const search = (text) => shown.page.getByRole("searchbox").fill(text);
const select = (text) => list().getByRole("treeitem").filter({ hasText: text }).first().click();
const settled = () => shown.page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))));
const activeRow = () =>
    list().evaluate((node) => document.getElementById(node.getAttribute("aria-activedescendant"))?.querySelector(".row-text").textContent);

/** The rows in view as "badge text", those inside a group further in. */
const rows = () =>
    list().evaluate((node) =>
        [...node.querySelectorAll("[role=treeitem]")].map(
            (row) => `${row.ariaLevel === "2" ? "  " : ""}${row.querySelector(".kind").textContent} ${row.querySelector(".row-text").textContent}`,
        ),
    );

test("every output stands under the input that caused it", async () => {
    await start(beginning().slice(0, 8));
    assert.deepEqual(await rows(), [
        "create com.norvane.vantor.presentation (cpp)",
        "  trace Creating Plugin",
        "  api GetQuillApiFactory",
        "  created object true",
        "register arguments \"\", callbacks \"host\", translator true, handle 7",
        "  trace [struct PresentationPlugin_s][process_event] struct Register_e",
        "  trace [struct PresentationPlugin_s][transition] class Unregistered_s -> class Registered_s",
        "  result 0",
    ]);
});

test("without groups everything stands in the order in which it happened", async () => {
    await start(beginning().slice(0, 4));
    await shown.button("Group").click();
    await settled();
    assert.equal((await rows()).some((row) => row.startsWith("  ")), false);
    assert.equal(await count(), "4 shown");
});

test("each kind can be left out and tells its number", async () => {
    await start();
    assert.equal(await chip("Log").locator(".chip-count").innerText(), "12");
    await chip("Log").click();
    assert.equal((await rows()).some((row) => /\b(trace|warning|error) /.test(row)), false);
    assert.equal(await chip("Log").getAttribute("aria-pressed"), "false");
});

test("an input without a kind that is wanted stands there for its outputs' sake", async () => {
    await start();
    for (const label of ["Calls", "Events", "Documents", "Requests", "Log", "Service", "Remarks"]) {
        await chip(label).click();
    }
    assert.deepEqual(await rows(), [
        "deliver StatusNotification · active",
        "  notice update · Attention · Registration is required to access secure resources.",
    ]);
});

test("log lines can be left out by their severity", async () => {
    await start();
    await shown.page.getByLabel("Least severity of log lines").selectOption("Warnings and errors");
    const lines = (await rows()).filter((row) => /^ +(trace|info|warning|error) /.test(row));
    assert.deepEqual(lines, ["  warning Ignoring unexpected Status Notification", "  error Unexpected state transition"]);
});

test("the search looks at everything that an entry holds, whatever the case", async () => {
    await start();
    await search("CHOICE-1");
    assert.deepEqual((await rows()).filter((row) => row.startsWith("  api")), [
        '  api InitiateEnrollment {"version":"1","enrollment_choice_id":"choice-1","enrollment_context":""}',
    ]);
    await search("nowhere to be found");
    assert.equal(await count(), "Nothing matches");
});

test("a group can be closed and opened, by its arrow and by the keyboard", async () => {
    await start(beginning().slice(0, 8));
    await list().locator(".twist").first().click();
    await settled();
    assert.equal((await rows())[1].startsWith("register"), true);
    await list().press("ArrowRight");
    await settled();
    assert.equal((await rows())[1], "  trace Creating Plugin");
    await list().press("ArrowLeft");
    await settled();
    assert.equal(await list().getByRole("treeitem").first().getAttribute("aria-expanded"), "false");
});

test("arrow keys go from row to row, out of a group and to the ends", async () => {
    await start(beginning().slice(0, 8));
    await list().focus();
    for (const [key, text] of [
        ["Home", "com.norvane.vantor.presentation (cpp)"],
        ["ArrowDown", "Creating Plugin"],
        ["ArrowDown", "GetQuillApiFactory"],
        ["ArrowLeft", "com.norvane.vantor.presentation (cpp)"],
        ["ArrowRight", "Creating Plugin"],
        ["ArrowUp", "com.norvane.vantor.presentation (cpp)"],
        ["End", "0"],
    ]) {
        await shown.page.keyboard.press(key);
        assert.equal(await activeRow(), text, key);
    }
    assert.equal(await detail().locator(".detail-number").innerText(), "#8");
});

test("a notice is laid out, one element a line", async () => {
    await start();
    await select("update · Attention");
    const lines = await detail().locator(".code-line").allInnerTexts();
    assert.equal(lines.length, 5);
    assert.equal(lines[3], '<traystate id="tray_state_string" value="Registration required"/>');
    assert.equal(lines[4], "</vtguiNotice>");
});

test("an output leads to what caused it", async () => {
    await start();
    await select("update · Attention");
    await shown.button("#13 deliver").click();
    assert.equal(await detail().locator(".detail-number").innerText(), "#13");
    assert.equal(await activeRow(), "StatusNotification · active");
});

test("a document tells what has changed since the one before", async () => {
    await start();
    await select("active · x");
    const table = detail().getByRole("table");
    assert.deepEqual(await table.locator("tbody tr").allInnerTexts(), [
        'interceptor_connectivity\t"ok"\t"disconnected"',
        'substate\tabsent\t"x"',
    ]);
    assert.equal(await detail().getByRole("heading").first().innerText(), "2 changes since #13");
});

test("a document like the one before says so", async () => {
    const recorder = new Recorder();
    const one = () => recorder.input({ do: "deliver", document: "StatusNotification", json: status({ substate: "same" }) });
    await start([one(), one()]);
    await list().press("End");
    assert.equal(await detail().locator(".note").innerText(), "The same as the one before, #1.");
});

test("a document that is no JSON is shown as it came", async () => {
    await start([new Recorder().input({ do: "deliver", document: "StatusNotification", json: '{"version": <b>1</b>' })]);
    await select("StatusNotification");
    assert.equal(await detail().locator(".code").innerText(), '{"version": <b>1</b>');
    assert.equal(await detail().locator("b").count(), 0);
});

test("a notice that is no XML is shown as it came", async () => {
    await start([new Recorder().output({ out: "notice", xml: "<vtguiNotice><label>" })]);
    await select("<vtguiNotice>");
    assert.equal(await detail().locator(".code").innerText(), "<vtguiNotice><label>");
});

test("a payload of the local page is decoded", async () => {
    const detailText = Buffer.from('{"flow":"alert","value":{"alerts":[]}}').toString("base64");
    const xml = `<vtguiNotice type="popup"><popup id="p"><webbrowser event_dispatch_detail="${detailText}"/></popup></vtguiNotice>`;
    await start([new Recorder().output({ out: "notice", xml })]);
    await select("popup");
    assert.equal(await detail().getByRole("region", { name: "Payload as JSON" }).getByText('"alert"', { exact: true }).count(), 1);
});

test("a log line tells its severity, its function and its place", async () => {
    await start();
    await select("Ignoring unexpected");
    assert.deepEqual(await detail().locator("dd").allInnerTexts(), [
        "2 warning",
        "PresentationPluginImpl::updateMainUi",
        "PresentationPluginImpl:42",
    ]);
});

test("a log line that holds others stays one line", async () => {
    await start([new Recorder().output(log(3, "f", "first\n2026-11-21 W/ second\u001b[2J\u2028\u202e\u0085"))]);
    const line = "first\\n2026-11-21 W/ second\\u001B[2J\\u2028\\u202E\\u0085";
    assert.deepEqual(await rows(), [`error ${line}`]);
    await select("first");
    assert.equal(await detail().getByRole("region", { name: "Text" }).textContent(), line);
});

test("new entries come at the end, and the list goes along", async () => {
    const recorder = new Recorder();
    await start(burst(200, recorder));
    await shown.say({ type: "entries", entries: [recorder.input({ do: "start" })] });
    assert.equal((await rows()).at(-1), "start ");
    assert.equal(await shown.button("Follow").getAttribute("aria-pressed"), "true");
});

test("who reads an entry isn't taken away from it", async () => {
    const recorder = new Recorder();
    await start(burst(400, recorder));
    await search("line 1");
    await search("");
    await list().focus();
    await shown.page.keyboard.press("Home");
    await shown.say({ type: "entries", entries: burst(100, recorder) });
    assert.equal(await shown.button("Follow").getAttribute("aria-pressed"), "false");
    assert.equal(await list().evaluate((node) => node.scrollTop), 0);
    assert.equal(await count(), "500 shown");
});

test("a selected row stays in view when the entry takes its room", async () => {
    await start(burst(200));
    await list().focus();
    await shown.page.keyboard.press("End");
    await shown.page.keyboard.press("ArrowUp");
    await settled();
    const [row, box] = await list().evaluate((node) => [
        document.getElementById(node.getAttribute("aria-activedescendant")).getBoundingClientRect().bottom,
        node.getBoundingClientRect().bottom,
    ]);
    assert.equal(row <= box + 1, true);
});

test("ten thousand entries are a few dozen elements", async () => {
    const recorder = new Recorder();
    await start(burst(2000, recorder));
    for (let batch = 0; batch < 8; ++batch) {
        await shown.say({ type: "entries", entries: burst(1000, recorder) });
    }
    assert.equal(await count(), "10000 shown");
    assert.equal((await list().getByRole("treeitem").count()) < 80, true);
    await list().press("Home");
    assert.equal((await rows())[0], "deliver StatusNotification · active · burst-0");
});

test("what was kept back from a slow page is told", async () => {
    await start();
    await shown.say({ type: "entries", entries: [], missed: 12 });
    assert.equal(await count(), "27 shown, 12 missed");
});

test("only so many entries are kept", async () => {
    const recorder = new Recorder();
    await start(burst(2000, recorder));
    for (let batch = 0; batch < 5; ++batch) {
        await shown.say({ type: "entries", entries: burst(4000, recorder) });
    }
    assert.equal(await count(), "20000 shown");
});

test("an unknown kind of entry is shown all the same", async () => {
    const recorder = new Recorder();
    await start([recorder.input({ do: "something", with: 1 }), recorder.output({ out: "toString", value: 2 }), recorder.output(log(7, "f", "m"))]);
    assert.deepEqual(await rows(), ["something with 1", "  toString value 2", "  log m"]);
});
