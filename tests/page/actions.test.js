import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, blocked, interceptor, issuesSection, local, posture, reenroll, verify } from "./support/payloads.js";

const shown = usePage({}, { extra: { "/opened": "<!doctype html><title>Opened</title>" } });

test("a local action leads to its own page, and nothing is sent on the way", async () => {
    await shown.show(alerts(reenroll));
    await shown.press("Continue");
    assert.equal(await shown.where(), "action");
    assert.equal(await shown.heading(), "Verify your identity");
    assert.deepEqual(await shown.texts(), ["Enrollment will continue in a new window."]);
    assert.deepEqual(await shown.sent(), []);
});

test("from its page a local action's event goes out with its type and value", async () => {
    await shown.show(alerts(reenroll));
    await shown.press("Continue");
    await shown.press("Continue");
    assert.deepEqual(await shown.sent(), [{ type: "re-enroll", value: "enrollment-7" }]);
    assert.equal((await shown.texts())[1], "Requested. Please go on in the window that opens.");
    assert.equal(await shown.announced(), "Requested. Please go on in the window that opens.");
});

test("each of several requests sends its own event", async () => {
    await shown.show(alerts(verify("context-1"), verify("context-2")));
    for (const index of [1, 0]) {
        await shown.page.locator(".entry").nth(index).click();
        await shown.press("Verify");
        await shown.press("Verify");
        await shown.press("Back");
        await shown.press("All alerts (2)");
    }
    assert.deepEqual(await shown.sent(), [
        { type: "dataplane-auth", value: "context-2" },
        { type: "dataplane-auth", value: "context-1" },
    ]);
});

test("a user who lost the new window can ask again", async () => {
    await shown.show(alerts(reenroll));
    await shown.press("Continue");
    await shown.press("Continue");
    await shown.press("Continue");
    assert.equal((await shown.sent()).length, 2);
});

test("a double click on the way to an action's page sends nothing", async () => {
    await shown.show(alerts(reenroll));
    const before = await shown.page.getByRole("button", { name: "Continue" }).boundingBox();
    const middle = [before.x + before.width / 2, before.y + before.height / 2];
    await shown.page.mouse.move(...middle);
    await shown.page.mouse.down({ clickCount: 1 });
    await shown.page.mouse.up({ clickCount: 1 });
    assert.equal(await shown.where(), "action");
    const after = await shown.page.getByRole("button", { name: "Continue" }).boundingBox();
    await shown.page.mouse.move(after.x + after.width / 2, after.y + after.height / 2);
    await shown.page.mouse.down({ clickCount: 2 });
    await shown.page.mouse.up({ clickCount: 2 });
    assert.deepEqual(await shown.sent(), []);
});

test("a key that is held down acts once", async () => {
    await shown.show(alerts(posture));
    await shown.page.getByRole("button", { name: "Check again" }).focus();
    for (let repeat = 0; repeat < 5; ++repeat) {
        await shown.page.keyboard.down("Enter");
    }
    await shown.page.keyboard.up("Enter");
    assert.equal((await shown.sent()).length, 1);
});

test("a local action without texts still has a page and a button", async () => {
    await shown.show(alerts(alert("A", "", "", local("", "", "", "re-enroll", "e"))));
    await shown.press("Continue");
    assert.equal(await shown.heading(), "Continue");
    await shown.press("Continue");
    assert.deepEqual(await shown.sent(), [{ type: "re-enroll", value: "e" }]);
});

test("a remote action is a link to its address, which is there to be read before the click", async () => {
    await shown.show(alerts(blocked("https://help.example/access?id=42")));
    const link = shown.page.getByRole("link", { name: "See Details" });
    assert.equal(await link.getAttribute("href"), "https://help.example/access?id=42");
    assert.equal(await link.getAttribute("target"), "_blank");
    assert.equal(await link.getAttribute("rel"), "noopener noreferrer");
    assert.equal((await shown.texts())[1], "Leads to https://help.example/access?id=42");
});

test("a remote action opens its address on the click and not before", async () => {
    const address = `${shown.server.origin}/opened`;
    const opened = [];
    shown.context.on("page", (page) => opened.push(page));
    await shown.show(alerts(blocked(address)));
    await shown.page.getByRole("link", { name: "See Details" }).hover();
    assert.deepEqual(opened, []);
    assert.ok(!shown.server.requests.includes("/opened"));
    const [page] = await Promise.all([
        shown.context.waitForEvent("page"),
        shown.page.getByRole("link", { name: "See Details" }).click(),
    ]);
    await page.waitForURL(address);
    assert.equal(await page.evaluate(() => window.opener), null);
    await page.close();
    assert.deepEqual(await shown.sent(), []);
    assert.equal(await shown.where(), "alert");
});

test("a link without a label is labelled with its address", async () => {
    await shown.show(alerts(blocked("https://help.example/", "")));
    assert.equal(await shown.page.getByRole("link").innerText(), "https://help.example/");
});

for (const address of [
    "javascript:document.title='run'",
    " JaVaScRiPt:document.title='run'",
    "java\nscript:document.title='run'",
    "data:text/html,<script>document.title='run'</script>",
    "file:///etc/passwd",
    "vbscript:run",
    "blob:https://help.example/1",
    "ms-settings:network",
    "mailto:help@help.example",
    "//help.example/",
    "/wren/v1/index.html",
    "help.example",
    "https://",
    "http://[",
    "",
]) {
    test(`the address ${JSON.stringify(address)} is a text, not a link`, async () => {
        await shown.show(alerts(blocked(address)));
        assert.equal(await shown.page.locator("main a").count(), 0);
        assert.equal(await shown.page.locator(".remote-label").textContent(), "See Details");
        assert.equal(await shown.page.locator(".address bdi").textContent(), address);
        assert.deepEqual((await shown.call("address", "webAddress", address)).value, null);
    });
}

for (const [text, address] of [
    ["https://help.example", "https://help.example/"],
    ["HTTP://help.example/a b", "http://help.example/a%20b"],
    [" https://help.example/ ", "https://help.example/"],
]) {
    test(`the address ${JSON.stringify(text)} is a link`, async () => {
        assert.equal((await shown.call("address", "webAddress", text)).value, address);
    });
}

test("an alert that the user can do nothing about offers a new check of the device", async () => {
    await shown.show(alerts(posture));
    await shown.press("Check again");
    assert.deepEqual(await shown.sent(), [{ type: "posture-update", value: "" }]);
    assert.equal((await shown.texts()).at(-1), "A new check was requested. This page changes by itself when there is news.");
    assert.equal((await shown.announced()).trim(), "A new check was requested. This page changes by itself when there is news.");
});

test("the list offers a new check too", async () => {
    await shown.show(alertsWithSection(issuesSection, posture, interceptor));
    await shown.press("See Details");
    await shown.press("Check again");
    assert.deepEqual(await shown.sent(), [{ type: "posture-update", value: "" }]);
});

test("an alert with an action of its own offers no check beside it", async () => {
    await shown.show(alerts(reenroll));
    assert.equal(await shown.page.getByRole("button", { name: "Check again" }).count(), 0);
});

test("asking for a check twice is told twice", async () => {
    await shown.show(alerts(posture));
    await shown.press("Check again");
    const first = await shown.announced();
    await shown.press("Check again");
    assert.notEqual(await shown.announced(), first);
    assert.equal((await shown.sent()).length, 2);
});

test("a confirmation goes when the user leaves its page", async () => {
    await shown.show(alerts(reenroll));
    await shown.press("Continue");
    await shown.press("Continue");
    await shown.press("Back");
    await shown.press("Continue");
    assert.deepEqual(await shown.texts(), ["Enrollment will continue in a new window."]);
});
