import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import {
    alert,
    alerts,
    alertsWithSection,
    blocked,
    emptySection,
    interceptor,
    issuesSection,
    noService,
    posture,
    verify,
} from "./support/payloads.js";

const shown = usePage();

const entries = () => shown.page.locator(".entry .entry-texts").allInnerTexts();

test("before the first payload the page waits", async () => {
    assert.equal(await shown.where(), "waiting");
    assert.equal(await shown.heading(), "One moment, please");
    assert.equal(await shown.page.locator("main").getAttribute("aria-busy"), "true");
});

test("no alert shows the all-clear", async () => {
    await shown.show(alerts());
    assert.equal(await shown.where(), "clear");
    assert.equal(await shown.heading(), "Nothing needs your attention");
    assert.equal(await shown.page.locator("main").getAttribute("aria-busy"), null);
});

test("one alert shows its title, its short and its long text", async () => {
    await shown.show(alerts(posture));
    assert.equal(await shown.where(), "alert");
    assert.equal(await shown.heading(), "Plover Desktop error");
    assert.deepEqual((await shown.texts()).slice(0, 2), [
        "Try relaunching Plover Desktop App.",
        "Plover Desktop app on your device is not responding. Try to relaunch the application. " +
            "If this error persists, contact your IT help desk.",
    ]);
    assert.equal(await shown.page.getByRole("navigation").count(), 0);
});

test("a short text that the long one repeats is not shown twice", async () => {
    await shown.show(alerts(noService));
    assert.equal(
        (await shown.texts())[0],
        "Cannot communicate with the Kestrel Suite service. Try restarting your computer. " +
            "If this problem persists, contact your IT help desk.",
    );
});

test("an alert's empty texts leave no gap", async () => {
    await shown.show(alerts(alert("Access blocked", "", "")));
    assert.equal(await shown.page.locator("main p:empty").count(), 0);
    assert.deepEqual(await shown.texts(), ["Asks for a new check of this device."]);
});

test("an alert without a title still has a heading", async () => {
    await shown.show(alerts(alert("", "", "Something is wrong.")));
    assert.equal(await shown.heading(), "Alert");
});

test("lines of a text stay lines", async () => {
    await shown.show(alerts(alert("A", "", "first\nsecond")));
    assert.equal((await shown.texts())[0], "first\nsecond");
});

test("several alerts begin with the section's title, text and label", async () => {
    await shown.show(alertsWithSection(issuesSection, posture, interceptor));
    assert.equal(await shown.where(), "section");
    assert.equal(await shown.heading(), "Issues affecting secure resource access");
    assert.deepEqual(await shown.texts(), [issuesSection.alertSectionDescription]);
    assert.deepEqual(await shown.page.getByRole("button").allInnerTexts(), ["See Details"]);
});

test("the section leads to the list with its own title and text, in the payload's order", async () => {
    const strings = { ...issuesSection, alertListTitle: "The list", alertListDescription: "Please look." };
    await shown.show(alertsWithSection(strings, posture, interceptor, verify("context-1")));
    await shown.press("See Details");
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.heading(), "The list");
    assert.equal((await shown.texts())[0], "Please look.");
    assert.deepEqual(await entries(), [
        "Plover Desktop error\nTry relaunching Plover Desktop App.",
        "Network interceptor error\nCannot communicate with the network interceptor component, contact your IT help desk.",
        "Verify your identity\nYour organization requires you to verify your identity so that you can securely access corporate resources.",
    ]);
});

test("each entry leads to its alert, and the way back to the list and to the section", async () => {
    await shown.show(alertsWithSection(issuesSection, posture, interceptor));
    await shown.press("See Details");
    for (const [index, title] of ["Plover Desktop error", "Network interceptor error"].entries()) {
        await shown.page.locator(".entry").nth(index).click();
        assert.equal(await shown.where(), "alert");
        assert.equal(await shown.heading(), title);
        await shown.press("All alerts (2)");
        assert.equal(await shown.where(), "list");
    }
    await shown.press("Back");
    assert.equal(await shown.where(), "section");
    assert.equal(await shown.page.getByRole("navigation").count(), 0);
});

test("several alerts with empty section strings begin with the list, under the page's own heading", async () => {
    await shown.show(alertsWithSection(emptySection, verify("context-1"), verify("context-2")));
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.heading(), "Alerts");
    assert.equal((await entries()).length, 2);
    assert.equal(await shown.page.getByRole("navigation").count(), 0);
});

test("a section with only a label or only a title makes up for the rest", async () => {
    await shown.show(alertsWithSection({ ...emptySection, alertSectionActionLabel: "Open" }, posture, interceptor));
    assert.equal(await shown.heading(), "Alerts");
    assert.deepEqual(await shown.page.getByRole("button").allInnerTexts(), ["Open"]);
    await shown.show(alertsWithSection({ ...emptySection, alertSectionTitle: "Issues" }, posture, interceptor));
    assert.equal(await shown.heading(), "Issues");
    assert.deepEqual(await shown.page.getByRole("button").allInnerTexts(), ["See details"]);
});

test("section strings of a single alert are not shown", async () => {
    await shown.show(alertsWithSection(issuesSection, posture));
    assert.equal(await shown.where(), "alert");
    assert.equal(await shown.heading(), "Plover Desktop error");
});

test("the window's title follows the heading", async () => {
    assert.equal(await shown.page.title(), "Wren Gate");
    await shown.show(alertsWithSection(issuesSection, posture, blocked("https://help.example/")));
    assert.equal(await shown.page.title(), "Issues affecting secure resource access - Wren Gate");
    await shown.press("See Details");
    await shown.page.locator(".entry").nth(1).click();
    assert.equal(await shown.page.title(), "Access blocked - Wren Gate");
});

test("five hundred alerts are five hundred entries", async () => {
    const many = Array.from({ length: 500 }, (_, index) => alert(`Alert ${index}`, "", ""));
    await shown.show(alerts(...many));
    assert.equal(await shown.page.locator(".entry").count(), 500);
});
