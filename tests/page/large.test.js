/**
 * Lists of thousands of alerts: the first are there at once, the others soon, and all can be used like those of a
 * short list, by eyes, keyboard and screen reader.
 */
import assert from "node:assert/strict";
import { test } from "node:test";

import { encode, usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, issuesSection, numbered, posture, reenroll } from "./support/payloads.js";
import { picture } from "./support/pictures.js";

const shown = usePage();

const many = numbered(8000);
const last = () => shown.page.locator("[data-control=entry-7999]");
const entries = () => shown.page.locator(".entry").count();

/** How many entries there are before the page has had another turn. */
function entriesAtOnce(payload) {
    return shown.page.evaluate((detail) => {
        window.dispatchEvent(new CustomEvent("update-flow", { detail }));
        return document.querySelectorAll(".entry").length;
    }, encode(payload));
}

async function showAll(payload, count) {
    await shown.show(payload);
    await shown.page.locator(`[data-control=entry-${count - 1}]`).waitFor({ state: "attached" });
}

/** How far below the window's top an entry stands. */
const topOf = (index) => shown.page.locator(`[data-control=entry-${index}]`).evaluate((one) => Math.round(one.getBoundingClientRect().top));

const isInWindow = (locator) =>
    locator.evaluate((one) => {
        const { top, bottom } = one.getBoundingClientRect();
        return top > -1 && bottom < innerHeight + 1;
    });

test("the first of many alerts are there at once, and in the end all", async () => {
    assert.equal(await entriesAtOnce(alerts(...many)), 500);
    assert.equal(await shown.where(), "list");
    assert.equal(await shown.announced(), "8000 alerts.");
    await last().waitFor({ state: "attached" });
    assert.equal(await entries(), 8000);
    assert.equal(await shown.fault(), "");
});

test("many alerts with a section begin with it, and its button leads to all of them", async () => {
    await shown.show(alertsWithSection(issuesSection, ...many));
    assert.equal(await shown.where(), "section");
    await shown.press("See Details");
    await last().click();
    assert.equal(await shown.heading(), "Alert 7999");
});

test("each entry says which of how many it is, before all are there", async () => {
    await shown.page.evaluate((detail) => {
        window.requestAnimationFrame = () => {};
        window.dispatchEvent(new CustomEvent("update-flow", { detail }));
    }, encode(alerts(...many)));
    const places = await shown.page
        .getByRole("listitem")
        .evaluateAll((items) => items.map((item) => [item.ariaPosInSet, item.ariaSetSize]));
    assert.equal(places.length, 500);
    assert.deepEqual([places[0], places[499]], [["1", "8000"], ["500", "8000"]]);
});

test("entries out of sight are there for screen readers, in one list", async () => {
    await showAll(alerts(...numbered(1000)), 1000);
    const session = await shown.context.newCDPSession(shown.page);
    const { nodes } = await session.send("Accessibility.getFullAXTree");
    await session.detach();
    const heard = nodes.filter(({ ignored }) => !ignored);
    assert.equal(heard.filter(({ role }) => role.value === "list").length, 1);
    assert.equal(heard.filter(({ role }) => role.value === "listitem").length, 1000);
    const names = heard.filter(({ role }) => role.value === "button").map(({ name }) => name.value.split(" Access")[0]);
    assert.deepEqual(names.filter((name) => name !== "Check again"), many.slice(0, 1000).map(({ title }) => title));
});

test("the Tab key goes through the list, from what is in sight to what is not", async () => {
    await showAll(alerts(...many), 8000);
    await shown.page.locator("[data-control=entry-48]").focus();
    for (const control of ["entry-49", "entry-50", "entry-51"]) {
        await shown.page.keyboard.press("Tab");
        assert.equal(await shown.focused(), control);
        assert.ok(await isInWindow(shown.page.locator(`[data-control=${control}]`)));
    }
    await last().focus();
    await shown.page.keyboard.press("Tab");
    assert.equal(await shown.focused(), "check");
});

test("a search in the page finds an entry out of sight", async () => {
    await showAll(alerts(...many), 8000);
    assert.ok(await shown.page.evaluate(() => window.find("Alert 7654")));
    assert.equal(await shown.page.evaluate(() => getSelection().toString()), "Alert 7654");
});

test("the way back from an alert far down leads to its entry", async () => {
    await showAll(alerts(...many), 8000);
    await shown.page.locator("[data-control=entry-7000]").click();
    await shown.page.locator("[data-control=back]").click();
    assert.equal(await shown.focused(), "entry-7000");
    assert.ok(await isInWindow(shown.page.locator("[data-control=entry-7000]")));
});

test("the way back leads to an entry that has not had its turn", async () => {
    await shown.page.evaluate(() => {
        window.requestAnimationFrame = () => {};
    });
    await shown.show(alerts(...numbered(10)));
    await shown.page.locator("[data-control=entry-9]").click();
    await shown.show(alerts(...many.slice(10), ...many.slice(0, 10)));
    await shown.page.locator("[data-control=back]").click();
    assert.equal(await shown.focused(), "entry-7999");
    assert.equal(await entries(), 8000);
});

test("what comes while the list still grows takes its place", async () => {
    await shown.show(alerts(...many));
    await showAll(alerts(...numbered(700), posture, reenroll), 702);
    assert.equal(await entries(), 702);
    assert.equal(await shown.page.locator(".entry-title").nth(701).innerText(), "Verify your identity");
});

test("a new alert in front moves neither what the user sees nor the focus", async () => {
    await showAll(alerts(...many), 8000);
    await shown.page.locator("[data-control=entry-5000]").focus();
    const before = await topOf(5000);
    await shown.show(alerts(alert("New", "", ""), ...many));
    assert.equal(await shown.focused(), "entry-5001");
    assert.equal(await topOf(5001), before);
    assert.equal(await shown.page.locator("[data-control=entry-5001] .entry-title").innerText(), "Alert 5000");
    assert.equal(await entries(), 8001);
});

test("when other alerts have come for all of them, the window stays where it is", async () => {
    await showAll(alerts(...many), 8000);
    await shown.page.locator("[data-control=entry-3000]").focus();
    const before = await topOf(3000);
    await shown.show(alerts(...numbered(8000).map(({ title }) => alert(`Other ${title}`, "Changed.", ""))));
    assert.equal(await shown.focused(), "heading");
    assert.ok(Math.abs((await topOf(3000)) - before) < 720);
});

test("asking for a check leaves the entries alone", async () => {
    await showAll(alerts(...many), 8000);
    const first = await shown.page.locator("[data-control=entry-0]").elementHandle();
    await shown.page.locator("[data-control=check]").click();
    assert.equal(await shown.page.locator(".note").count(), 1);
    assert.ok(await isInWindow(shown.page.locator(".note")));
    assert.ok(await first.evaluate((entry) => entry.isConnected));
    assert.equal(await entries(), 8000);
});

test("an alert that is pressed after an update is the one that the entry names", async () => {
    await showAll(alerts(...numbered(600)), 600);
    await shown.show(alerts(posture, ...numbered(600).reverse()));
    await shown.page.locator("[data-control=entry-600]").click();
    assert.equal(await shown.heading(), "Alert 0");
});

test("alerts that look alike are as many entries as they are", async () => {
    const alike = Array.from({ length: 1200 }, () => posture);
    await showAll(alerts(...alike), 1200);
    await showAll(alerts(...alike.slice(0, 1100)), 1100);
    assert.equal(await entries(), 1100);
});

test("a long list looks like a short one, also at the seam of its blocks", async () => {
    await showAll(alerts(...many), 8000);
    await shown.page.locator("[data-control=entry-50]").focus();
    const edges = await shown.page
        .getByRole("listitem")
        .evaluateAll((items) =>
            items.slice(0, 120).map((item, index) => {
                const borders = [item, ...(index % 50 === 0 ? [item.parentElement] : [])];
                return borders.reduce((sum, one) => sum + parseFloat(getComputedStyle(one).borderTopWidth), 0);
            }),
        );
    assert.deepEqual(edges, edges.map((_, index) => (index === 0 ? 0 : 1)));
    await picture(shown.page, "page-long-list");
});
