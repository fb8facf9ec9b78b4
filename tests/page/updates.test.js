import assert from "node:assert/strict";
import { test } from "node:test";

import { encode, usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, interceptor, issuesSection, posture, progress, reenroll, verify } from "./support/payloads.js";

const shown = usePage();

const three = alertsWithSection(issuesSection, posture, interceptor, reenroll);

async function openEntry(index) {
    await shown.press("See Details");
    await shown.page.locator(".entry").nth(index).click();
}

test("an event on the document is taken, whether it bubbles or not", async () => {
    for (const [bubbles, title] of [[true, "First"], [false, "Second"]]) {
        await shown.page.evaluate(
            ([detail, init]) => document.dispatchEvent(new CustomEvent("update-flow", { detail, ...init })),
            [encode(alerts(alert(title, "", ""))), { bubbles }],
        );
        assert.equal(await shown.heading(), title);
    }
});

test("the section stays while alerts come and go", async () => {
    await shown.show(three);
    await shown.show(alertsWithSection(issuesSection, posture, interceptor));
    assert.equal(await shown.where(), "section");
    assert.equal(await shown.announced(), "2 alerts.");
});

test("the list stays and shows the new alerts", async () => {
    await shown.show(three);
    await shown.press("See Details");
    await shown.show(alertsWithSection(issuesSection, interceptor, reenroll));
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.page.locator(".entry").count(), 2);
});

test("the user stays on the same alert when the list moves, and sees its new words", async () => {
    await shown.show(three);
    await openEntry(0);
    const reworded = alert("Plover Desktop error", "", "Plover Desktop is back in a minute.");
    await shown.show(alertsWithSection(issuesSection, interceptor, reworded));
    assert.equal(await shown.where(), "alert");
    assert.equal((await shown.texts())[0], "Plover Desktop is back in a minute.");
    await shown.press("All alerts (2)");
    assert.equal(await shown.focused(), "entry-1");
});

test("the user stays on the page of an action, with its confirmation, while its alert is there", async () => {
    await shown.show(three);
    await openEntry(2);
    await shown.press("Continue");
    await shown.press("Continue");
    await shown.show(alertsWithSection(issuesSection, reenroll, interceptor));
    assert.equal(await shown.where(), "action");
    assert.equal((await shown.texts()).length, 2);
    assert.equal(await shown.focused(), "send");
});

test("a request that was answered takes the user back to the list, not to another request", async () => {
    await shown.show(alerts(verify("context-1"), verify("context-2"), verify("context-3")));
    await shown.page.locator(".entry").nth(0).click();
    await shown.press("Verify");
    await shown.show(alerts(verify("context-2"), verify("context-3")));
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.focused(), "heading");
    assert.equal(await shown.announced(), "The alert that you were reading is no longer reported. 2 alerts.");
    assert.deepEqual(await shown.sent(), []);
});

test("the last alert's end shows the all-clear", async () => {
    await shown.show(alerts(reenroll));
    await shown.press("Continue");
    await shown.show(alerts());
    assert.equal(await shown.where(), "clear");
    assert.equal(await shown.announced(), "The alert that you were reading is no longer reported. No alerts.");
});

test("one alert in the place of another is told", async () => {
    await shown.show(alerts(posture));
    await shown.show(alerts(interceptor));
    assert.equal(await shown.heading(), "Network interceptor error");
    assert.equal(await shown.focused(), "heading");
    assert.equal(
        await shown.announced(),
        "The alert that you were reading is no longer reported. 1 alert: Network interceptor error",
    );
});

test("the only alert stays when others join it, and the way to them appears", async () => {
    await shown.show(alerts(posture));
    await shown.page.getByRole("button", { name: "Check again" }).focus();
    await shown.show(three);
    assert.equal(await shown.heading(), "Plover Desktop error");
    assert.equal(await shown.focused(), "check");
    await shown.press("All alerts (3)");
    assert.equal(await shown.where(), "list");
});

test("the focus follows an entry to its new place in the list", async () => {
    await shown.show(three);
    await shown.press("See Details");
    await shown.page.locator(".entry").nth(1).focus();
    await shown.show(alertsWithSection(issuesSection, reenroll, posture, interceptor));
    assert.equal(await shown.focused(), "entry-2");
});

test("the focus of an entry that is gone moves to the heading", async () => {
    await shown.show(three);
    await shown.press("See Details");
    await shown.page.locator(".entry").nth(1).focus();
    await shown.show(alertsWithSection(issuesSection, posture, reenroll));
    assert.equal(await shown.focused(), "heading");
});

test("the focus of a control that is gone moves to the heading", async () => {
    await shown.show(three);
    await openEntry(0);
    await shown.page.getByRole("button", { name: "All alerts (3)" }).focus();
    await shown.show(alerts(posture));
    assert.equal(await shown.focused(), "heading");
});

test("a page that has not the focus does not take it", async () => {
    await shown.show(three);
    await shown.page.evaluate(() => {
        document.activeElement.blur();
        document.hasFocus = () => false;
    });
    await shown.show(progress("Enrolling...", 0));
    assert.equal(await shown.focused(), "body");
    assert.equal(await shown.announced(), "Enrolling... 0%");
});

test("the user's place in a long list is kept", async () => {
    const many = Array.from({ length: 60 }, (_, index) => alert(`Alert ${index}`, "", ""));
    await shown.show(alerts(...many));
    await shown.page.evaluate(() => window.scrollTo(0, 1500));
    await shown.show(alerts(...many, posture));
    assert.equal(await shown.page.evaluate(() => window.scrollY), 1500);
});

test("another page begins at its top", async () => {
    const many = Array.from({ length: 60 }, (_, index) => alert(`Alert ${index}`, "", ""));
    await shown.show(alerts(...many));
    await shown.page.locator(".entry").nth(40).click();
    assert.equal(await shown.page.evaluate(() => window.scrollY), 0);
    await shown.press("All alerts (60)");
    assert.equal(await shown.focused(), "entry-40");
    assert.ok(await shown.page.evaluate(() => window.scrollY > 0));
});

test("the same payload again leaves the page untouched", async () => {
    await shown.show(three);
    const view = await shown.page.locator("main > article").elementHandle();
    await shown.show(three);
    assert.ok(await view.evaluate((article) => article.isConnected));
});

test("a note about a check goes with the next payload, which is its answer", async () => {
    await shown.show(alerts(posture, interceptor));
    await shown.press("Check again");
    await shown.show(alerts(posture, interceptor, verify("context-1")));
    assert.equal(await shown.page.locator(".note").count(), 0);
});

test("what changes in place doesn't move, another page arrives", async () => {
    await shown.show(three);
    const arriving = () => shown.page.locator("main > .arriving").count();
    assert.equal(await arriving(), 1);
    await shown.show(alertsWithSection(issuesSection, posture, interceptor));
    assert.equal(await arriving(), 0);
    await shown.press("See Details");
    assert.equal(await arriving(), 1);
    await shown.press("Check again");
    assert.equal(await arriving(), 0);
});
