import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alerts, alertsWithSection, blocked, interceptor, issuesSection, posture, progress, reenroll } from "./support/payloads.js";

const shown = usePage({}, { extra: { "/help": "<!doctype html><title>Help</title>" } });

const key = (name) => shown.page.keyboard.press(name);

/** Every stop of the Tab key from the start of the page to its end. */
async function stops() {
    const found = [];
    for (;;) {
        await key("Tab");
        const control = await shown.focused();
        if (control === "body" || control === "html" || found.includes(control)) {
            return found;
        }
        found.push(control);
    }
}

test("a whole visit without a mouse: section, list, alert, action and back", async () => {
    await shown.show(alertsWithSection(issuesSection, posture, reenroll));
    assert.equal(await shown.focused(), "heading");

    await key("Tab");
    assert.equal(await shown.focused(), "open-list");
    await key("Enter");
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.focused(), "heading");

    await key("Tab");
    await key("Tab");
    assert.equal(await shown.focused(), "entry-1");
    await key("Space");
    assert.equal(await shown.where(), "alert");
    assert.equal(await shown.focused(), "heading");

    await key("Tab");
    assert.equal(await shown.focused(), "action-0");
    await key("Enter");
    assert.equal(await shown.where(), "action");
    assert.equal(await shown.focused(), "heading");

    await key("Tab");
    await key("Enter");
    assert.deepEqual(await shown.sent(), [{ type: "re-enroll", value: "enrollment-7" }]);
    assert.equal(await shown.focused(), "send");

    await key("Shift+Tab");
    assert.equal(await shown.focused(), "back");
    await key("Enter");
    assert.equal(await shown.where(), "alert");
    assert.equal(await shown.focused(), "action-0");

    await key("Shift+Tab");
    await key("Enter");
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.focused(), "entry-1");

    await key("Shift+Tab");
    await key("Shift+Tab");
    await key("Enter");
    assert.equal(await shown.where(), "section");
    assert.equal(await shown.focused(), "open-list");
});

test("a link is opened with the Enter key", async () => {
    await shown.show(alerts(blocked(`${shown.server.origin}/help`)));
    await key("Tab");
    assert.equal(await shown.focused(), "action-0");
    const [page] = await Promise.all([shown.context.waitForEvent("page"), key("Enter")]);
    await page.waitForURL("**/help");
    await page.close();
});

test("a new check is asked for with the keyboard, and the focus stays on it", async () => {
    await shown.show(alerts(posture));
    await key("Tab");
    await key("Space");
    assert.equal((await shown.sent()).length, 1);
    assert.equal(await shown.focused(), "check");
});

for (const [what, payload, path, expected] of [
    ["the section", alertsWithSection(issuesSection, posture, interceptor), [], ["open-list"]],
    ["the list", alertsWithSection(issuesSection, posture, interceptor), ["open-list"], ["back", "entry-0", "entry-1", "check"]],
    ["an alert of several", alertsWithSection(issuesSection, posture, interceptor), ["open-list", "entry-0"], ["back", "check"]],
    ["an action", alerts(reenroll), ["action-0"], ["back", "send"]],
    ["an enrollment", progress("Enrolling...", 0), [], []],
    ["the all-clear", alerts(), [], []],
]) {
    test(`the Tab key stops at every control of ${what}, from top to bottom, and is never caught`, async () => {
        await shown.show(payload);
        for (const control of path) {
            await shown.page.locator(`[data-control="${control}"]`).click();
        }
        await shown.page.evaluate(() => {
            // To the start of the document, where the Tab key of a freshly opened window begins.
            document.documentElement.tabIndex = -1;
            document.documentElement.focus();
            document.documentElement.removeAttribute("tabindex");
        });
        assert.deepEqual(await stops(), expected);
    });
}

test("what has the focus by keyboard shows it", async () => {
    await shown.show(alerts(reenroll, blocked("https://help.example/")));
    const outline = () => shown.page.evaluate(() => getComputedStyle(document.activeElement).outlineStyle);
    for (const control of ["entry-0", "entry-1", "check"]) {
        await key("Tab");
        assert.equal(await shown.focused(), control);
        assert.equal(await outline(), "solid");
    }
});
