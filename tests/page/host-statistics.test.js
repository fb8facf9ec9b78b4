import assert from "node:assert/strict";
import { beforeEach, test } from "node:test";

import { useHostPage } from "./support/host-page.js";
import { active, statistics } from "./support/host-screens.js";

const shown = useHostPage();

const details = () => shown.page.getByRole("treegrid", { name: "Statistics: Details" });
const group = (title) => details().getByRole("row", { name: title });
const rows = async () =>
    (await details().locator("tr:visible").allInnerTexts()).map((text) => text.replaceAll("\t", " ").replaceAll("\n", " ").trim());
const focused = () => shown.page.evaluate(() => document.activeElement.innerText.replaceAll("\t", " ").trim());

beforeEach(async () => {
    await shown.load({ screen: active() });
    await shown.tab("Statistics");
});

test("the overview stands first", async () => {
    assert.deepEqual(await shown.page.locator("caption").allTextContents(), ["Overview", "Details"]);
});

test("the first group of a list is open, the others are closed", async () => {
    assert.deepEqual(await rows(), [
        "General:",
        "Enrollment Time: 11/03/26 09:41:12",
        "Proxy Connectivity Status: Ok",
        "Config Sync",
        "Active Flow Counts:",
        "Proxy Configurations:",
    ]);
    assert.equal(await group("General:").getAttribute("aria-expanded"), "true");
    assert.equal(await group("Config Sync").getAttribute("aria-expanded"), "false");
    assert.equal(await group("General:").getAttribute("aria-level"), "1");
});

test("a click opens and closes a group", async () => {
    await group("Active Flow Counts:").click();
    assert.equal((await rows()).includes("Active UDP Flows: 12"), true);
    await group("Active Flow Counts:").click();
    assert.equal((await rows()).includes("Active UDP Flows: 12"), false);
});

test("one row of a list can be reached by the Tab key", async () => {
    assert.equal(await details().locator("tr[tabindex='0']").count(), 1);
});

test("arrow keys move, open and close; Home and End lead to the ends", async () => {
    await details().locator("tr[tabindex='0']").focus();
    for (const [key, where] of [
        ["ArrowDown", "Enrollment Time: 11/03/26 09:41:12"],
        ["ArrowLeft", "General:"],
        ["ArrowLeft", "General:"],
        ["ArrowDown", "Config Sync"],
        ["ArrowRight", "Config Sync"],
        ["ArrowRight", "Server Connectivity: Ok"],
        ["ArrowUp", "Config Sync"],
        ["End", "Proxy Configurations:"],
        ["Home", "General:"],
        ["ArrowUp", "General:"],
        ["Enter", "General:"],
        ["ArrowDown", "Enrollment Time: 11/03/26 09:41:12"],
    ]) {
        await shown.page.keyboard.press(key);
        assert.equal(await focused(), where, key);
    }
});

test("an update keeps what is open and where the focus is", async () => {
    await group("Active Flow Counts:").click();
    await shown.page.keyboard.press("ArrowDown");
    await shown.show(active({ statistics: statistics({ flows: "345", proxies: { "Example proxy": "Active" } }) }));
    assert.equal(await focused(), "Active UDP Flows: 345");
    assert.equal(await group("Active Flow Counts:").getAttribute("aria-expanded"), "true");
});

test("a value that has changed is marked, one that has not isn't", async () => {
    await group("Active Flow Counts:").click();
    await shown.show(active({ statistics: statistics({ flows: "345", proxies: { "Example proxy": "Active" } }) }));
    assert.deepEqual(await details().locator(".changed").allInnerTexts(), ["345"]);
});

test("a group that goes takes its rows along, and the focus stays in the list", async () => {
    await group("Proxy Configurations:").click();
    await shown.show(active({ statistics: statistics() }));
    assert.equal((await rows()).at(-1), "Active Flow Counts:");
    assert.equal(await focused(), "General:");
});

test("two rows of one id are two rows", async () => {
    const lists = statistics();
    lists.stat_outlinelistbox[0].rows.push({ id: "row-0", columns: ["Once more", "Yes"] });
    await shown.show(active({ statistics: lists }));
    assert.equal((await rows()).includes("Once more Yes"), true);
});

test("without any list there is a word about it", async () => {
    await shown.show(active({ statistics: {} }));
    assert.equal(await shown.page.locator("#statistics").innerText(), "The module has not sent any statistics yet.");
});
