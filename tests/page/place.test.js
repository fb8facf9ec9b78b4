import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";

const shown = usePage({}, { keep: true });

const noStrings = { sectionTitle: "", sectionText: "", sectionLabel: "", listTitle: "", listText: "" };
const someStrings = { ...noStrings, sectionTitle: "Issues" };

const enrollment = { flow: "enrollment", title: "Enrolling...", percent: 0 };
const alertsOf = (...alerts) => ({ flow: "alert", alerts, strings: noStrings });
const sectionOf = (...alerts) => ({ flow: "alert", alerts, strings: someStrings });

const told = (title, longText = "") => ({ title, shortText: "", longText, actions: [] });
const linked = (title, address) => ({ ...told(title), actions: [{ kind: "remote", label: "See", address }] });
const asking = (title, value, type = "dataplane-auth") => ({
    ...told(title),
    actions: [{ kind: "local", label: "Verify", title: "", description: "", event: { type, value } }],
});

const home = async (flow) => (await shown.call("place", "home", flow)).value;
const outer = async (place, flow) => (await shown.call("place", "outer", place, flow)).value;
const follow = async (place, before, after) => (await shown.call("place", "follow", place, before, after)).value;
const findAgain = async (...given) => (await shown.call("place", "findAgain", ...given)).value;

const kept = (place) => ({ place, kept: true, gone: false });
const moved = (place) => ({ place, kept: false, gone: false });
const gone = (place) => ({ place, kept: false, gone: true });

for (const [what, flow, place] of [
    ["nothing", null, { page: "waiting" }],
    ["an enrollment", enrollment, { page: "progress" }],
    ["no alert", alertsOf(), { page: "clear" }],
    ["one alert", alertsOf(told("A")), { page: "alert", alert: 0 }],
    ["one alert with section strings", sectionOf(told("A")), { page: "alert", alert: 0 }],
    ["two alerts with section strings", sectionOf(told("A"), told("B")), { page: "section" }],
    ["two alerts without section strings", alertsOf(told("A"), told("B")), { page: "list" }],
]) {
    test(`${what} begins on the page "${place.page}"`, async () => assert.deepEqual(await home(flow), place));
}

for (const [what, place, flow, target] of [
    ["an action leads to its alert", { page: "action", alert: 1, action: 0 }, sectionOf(told("A"), asking("B", "1")), { page: "alert", alert: 1 }],
    ["one of several alerts leads to the list", { page: "alert", alert: 0 }, sectionOf(told("A"), told("B")), { page: "list" }],
    ["the only alert leads nowhere", { page: "alert", alert: 0 }, alertsOf(told("A")), null],
    ["the list leads to the section", { page: "list" }, sectionOf(told("A"), told("B")), { page: "section" }],
    ["a list without section leads nowhere", { page: "list" }, alertsOf(told("A"), told("B")), null],
    ["the section leads nowhere", { page: "section" }, sectionOf(told("A"), told("B")), null],
    ["progress leads nowhere", { page: "progress" }, enrollment, null],
]) {
    test(`back from ${what}`, async () => assert.deepEqual(await outer(place, flow), target));
}

const two = sectionOf(told("A"), told("B"));
const ask = sectionOf(told("A"), asking("Verify", "context-1"));

for (const [what, place, before, after, followed] of [
    ["the first payload goes to its home", { page: "waiting" }, null, two, moved({ page: "section" })],
    ["alerts after an enrollment go to their home", { page: "progress" }, enrollment, two, moved({ page: "section" })],
    ["an enrollment takes the place of alerts", { page: "list" }, two, enrollment, moved({ page: "progress" })],
    ["an enrollment goes on where it is", { page: "progress" }, enrollment, { ...enrollment, percent: 5 }, kept({ page: "progress" })],
    ["the section stays", { page: "section" }, two, sectionOf(told("C"), told("D")), kept({ page: "section" })],
    ["a section without strings becomes the list", { page: "section" }, two, alertsOf(told("A"), told("B")), moved({ page: "list" })],
    ["the list stays", { page: "list" }, two, sectionOf(told("C"), told("D"), told("E")), kept({ page: "list" })],
    ["a list of one becomes that alert", { page: "list" }, two, alertsOf(told("B")), moved({ page: "alert", alert: 0 })],
    ["a list of none becomes the all-clear", { page: "list" }, two, alertsOf(), moved({ page: "clear" })],
    ["the all-clear stays", { page: "clear" }, alertsOf(), alertsOf(), kept({ page: "clear" })],
    ["the all-clear ends with an alert", { page: "clear" }, alertsOf(), alertsOf(told("A")), moved({ page: "alert", alert: 0 })],
    ["an alert is followed to its new position", { page: "alert", alert: 1 }, two, sectionOf(told("C"), told("B"), told("A")), kept({ page: "alert", alert: 1 })],
    ["an alert that became the only one stays", { page: "alert", alert: 1 }, two, alertsOf(told("B")), kept({ page: "alert", alert: 0 })],
    ["the only alert stays when others join it", { page: "alert", alert: 0 }, alertsOf(told("A")), sectionOf(told("C"), told("A")), kept({ page: "alert", alert: 1 })],
    ["an alert of several that is gone leads to the list", { page: "alert", alert: 0 }, two, sectionOf(told("B"), told("C")), gone({ page: "list" })],
    ["an alert of several that is gone leads to the only one left", { page: "alert", alert: 0 }, two, alertsOf(told("B")), gone({ page: "alert", alert: 0 })],
    ["the only alert that is gone leads to the section of new ones", { page: "alert", alert: 0 }, alertsOf(told("A")), sectionOf(told("B"), told("C")), gone({ page: "section" })],
    ["the last alert that is gone leads to the all-clear", { page: "alert", alert: 0 }, alertsOf(told("A")), alertsOf(), gone({ page: "clear" })],
    ["an action stays with its event", { page: "action", alert: 1, action: 0 }, ask, sectionOf(asking("Verify", "context-2"), asking("Verify", "context-1")), kept({ page: "action", alert: 1, action: 0 })],
    ["an action isn't swapped for another of the same words", { page: "action", alert: 1, action: 0 }, ask, sectionOf(told("A"), asking("Verify", "context-2")), gone({ page: "list" })],
]) {
    test(`following: ${what}`, async () => assert.deepEqual(await follow(place, before, after), followed));
}

test("an action that its alert no longer offers leads to the alert", async () => {
    const [first, second] = [asking("Verify", "1"), asking("Verify", "2")];
    const both = { ...first, actions: [...first.actions, ...second.actions] };
    assert.deepEqual(
        await follow({ page: "action", alert: 0, action: 1 }, alertsOf(both), alertsOf(first)),
        moved({ page: "alert", alert: 0 }),
    );
});

for (const [what, before, index, after, found] of [
    ["by what it sends, whatever it says", [asking("Verify", "1")], 0, [told("A"), asking("Please verify", "1")], 1],
    ["not by its words when it sends something else", [asking("Verify", "1")], 0, [asking("Verify", "2")], -1],
    ["not when the same value is sent as another type", [asking("Verify", "1")], 0, [asking("Verify", "1", "re-enroll")], -1],
    ["not when it has stopped to send anything", [asking("Verify", "1")], 0, [told("Verify")], -1],
    ["by its texts", [told("A", "x"), told("A", "y")], 1, [told("A", "y"), told("A", "x")], 0],
    ["by its place among those that read the same", [told("A"), told("A"), told("A")], 1, [told("B"), told("A"), told("A")], 2],
    ["as the last of those that read the same, when one is gone", [told("A"), told("A")], 1, [told("A")], 0],
    ["by its address among those that read the same", [linked("A", "https://one/"), linked("A", "https://two/")], 1, [linked("A", "https://two/"), linked("A", "https://one/")], 0],
    ["by a title that only it has, when it was reworded", [told("A", "x"), told("B")], 0, [told("B"), told("A", "y")], 1],
    ["not by a title that two have now", [told("A", "x")], 0, [told("A", "y"), told("A", "z")], -1],
    ["not by a title that two had before", [told("A", "x"), told("A", "y")], 0, [told("A", "z")], -1],
    ["not by a title that only one which sends something has", [told("Verify", "x")], 0, [asking("Verify", "1")], -1],
    ["nowhere in an empty list", [told("A")], 0, [], -1],
]) {
    test(`an alert is found ${what}`, async () => assert.equal(await findAgain(before, index, after), found));
}
