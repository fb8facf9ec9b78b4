import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, local, progress, remote } from "./support/payloads.js";

const shown = usePage();

// What would run, load or restyle something if it ever became markup. Each text of a payload is made of it, with a
// name of its own, so that a test can tell that every one of them arrived as the text that it is.
const hostile = (name) =>
    `${name} <img src=x onerror="window.harmed=true"><script>window.harmed=true</script>` +
    `<style>body{display:none}</style><svg onload="window.harmed=true"></svg></h1>&lt;b&gt;&amp;"'\``;

const hostileAlert = (name, action) => alert(hostile(`${name} title`), hostile(`${name} short`), hostile(`${name} long`), action);

const hostileStrings = Object.fromEntries(
    ["alertSectionTitle", "alertSectionDescription", "alertSectionActionLabel", "alertListTitle", "alertListDescription"].map(
        (key) => [key, hostile(key)],
    ),
);

async function assertHarmless(...texts) {
    const { text, elements, harmed } = await shown.page.evaluate(() => ({
        text: document.body.textContent,
        elements: document.querySelectorAll("main img, main script, main style, main b, main svg[onload], main [onerror]").length,
        harmed: window.harmed,
    }));
    assert.equal(elements, 0);
    assert.equal(harmed, undefined);
    for (const name of texts) {
        assert.ok(text.includes(hostile(name)), `${name} stands on the page as it came`);
    }
}

test("markup in an alert is text", async () => {
    await shown.show(alerts(hostileAlert("alert")));
    await assertHarmless("alert title", "alert short", "alert long");
    assert.equal(await shown.page.title(), `${hostile("alert title")} - Wren Gate`);
    assert.equal(await shown.announced(), `1 alert: ${hostile("alert title")}`);
});

test("markup in a local action and on its page is text, and goes back to the host as it came", async () => {
    const action = local(hostile("label"), hostile("page title"), hostile("page text"), hostile("type"), hostile("value"));
    await shown.show(alerts(hostileAlert("alert", action)));
    await assertHarmless("label");
    await shown.page.locator("[data-control=action-0]").click();
    await assertHarmless("label", "page title", "page text");
    await shown.page.locator("[data-control=send]").click();
    assert.deepEqual(await shown.sent(), [{ type: hostile("type"), value: hostile("value") }]);
});

test("markup in a remote action is text, in its label and in its address", async () => {
    await shown.show(alerts(hostileAlert("alert", remote(hostile("label"), hostile("address")))));
    await assertHarmless("label", "address");
});

test("markup in a link's label is text, and in its address no more than an address", async () => {
    await shown.show(alerts(hostileAlert("alert", remote(hostile("label"), `https://help.example/"><img src=x onerror=alert(1)>`))));
    await assertHarmless("label");
    assert.equal(
        await shown.page.getByRole("link").getAttribute("href"),
        "https://help.example/%22%3E%3Cimg%20src=x%20onerror=alert(1)%3E",
    );
});

test("markup in the strings of the section and the list is text", async () => {
    await shown.show(alertsWithSection(hostileStrings, hostileAlert("first"), hostileAlert("second")));
    await assertHarmless("alertSectionTitle", "alertSectionDescription", "alertSectionActionLabel");
    await shown.page.locator("[data-control=open-list]").click();
    await assertHarmless("alertListTitle", "alertListDescription", "first title", "first short", "second title", "second short");
});

test("markup in the title of an enrollment is text, at first and later", async () => {
    await shown.show(progress(hostile("first"), 1));
    await assertHarmless("first");
    await shown.show(progress(hostile("second"), 2));
    await assertHarmless("second");
});
