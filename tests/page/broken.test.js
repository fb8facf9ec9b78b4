import assert from "node:assert/strict";
import { test } from "node:test";

import { encode, usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, interceptor, issuesSection, posture, progress, reenroll } from "./support/payloads.js";

const shown = usePage();

const outOfDate = "The latest update could not be read, so what you see may be a little out of date.";
const waiting = "The latest update could not be read. Waiting for the next one.";

const broken = [
    ["bad Base64", "???"],
    ["bad UTF-8", Buffer.from([0x7b, 0xff, 0x7d]).toString("base64")],
    ["no JSON", Buffer.from("<alert/>").toString("base64")],
    ["a wrong kind", encode(alerts(posture, alert(7, "", "")))],
    ["an unknown flow", encode({ flow: "unenrollment", value: {} })],
    ["an unknown action", encode(alerts(alert("A", "", "", { type: "call", label: "Call" })))],
    ["no text", { flow: "alert" }],
    ["nothing", null],
];

for (const [what, detail] of broken) {
    test(`after ${what} as the first update the page says so in one line and waits`, async () => {
        await shown.dispatch(detail);
        assert.equal(await shown.fault(), waiting);
        assert.equal(await shown.where(), "waiting");
        await shown.show(alerts(posture));
        assert.equal(await shown.fault(), "");
        assert.equal(await shown.where(), "alert");
    });

    test(`${what} loses nothing of what is shown`, async () => {
        await shown.show(alertsWithSection(issuesSection, posture, interceptor, reenroll));
        await shown.press("See Details");
        await shown.page.locator(".entry").nth(2).click();
        await shown.press("Continue");
        await shown.press("Continue");
        const before = await shown.page.locator("main").innerHTML();
        await shown.dispatch(detail);
        assert.equal(await shown.fault(), outOfDate);
        assert.equal(await shown.page.locator("main").innerHTML(), before);
        assert.equal(await shown.focused(), "send");
        await shown.press("Continue");
        assert.equal((await shown.sent()).length, 2);
    });
}

/** Lets something that the page needs fail until `repair`. */
const breakPage = (what) =>
    shown.page.evaluate((name) => {
        window.repair = { TextDecoder: window.TextDecoder, createElement: document.createElement };
        function fail() {
            throw new RangeError("Maximum call stack size exceeded");
        }
        if (name === "TextDecoder") {
            window.TextDecoder = fail;
        } else {
            document.createElement = fail;
        }
    }, what);

const repair = () =>
    shown.page.evaluate(() => {
        window.TextDecoder = window.repair.TextDecoder;
        document.createElement = window.repair.createElement;
    });

for (const what of ["TextDecoder", "createElement"]) {
    test(`when ${what} fails unexpectedly, the page says so and takes the same update later`, async () => {
        await breakPage(what);
        await shown.show(alerts(posture));
        assert.equal(await shown.fault(), waiting);
        assert.equal(await shown.where(), "waiting");
        await repair();
        await shown.show(alerts(posture));
        assert.equal(await shown.fault(), "");
        assert.equal(await shown.heading(), "Plover Desktop error");
        assert.deepEqual(shown.faults.splice(0), ["error: Maximum call stack size exceeded"]);
    });

    test(`when ${what} fails unexpectedly, nothing of what is shown is lost`, async () => {
        await shown.show(alertsWithSection(issuesSection, posture, interceptor));
        await shown.press("See Details");
        await breakPage(what);
        await shown.show(alerts(reenroll, posture, interceptor));
        assert.equal(await shown.fault(), outOfDate);
        await repair();
        await shown.page.locator(".entry").nth(1).click();
        assert.equal(await shown.heading(), "Network interceptor error");
        await shown.press("All alerts (2)");
        assert.equal(await shown.page.locator(".entry").count(), 2);
        assert.deepEqual(shown.faults.splice(0), ["error: Maximum call stack size exceeded"]);
    });
}

test("many broken updates make one line", async () => {
    await shown.show(progress("Enrolling...", 30));
    for (const [, detail] of broken) {
        await shown.dispatch(detail);
    }
    assert.equal(await shown.page.locator("#fault").count(), 1);
    assert.equal(await shown.fault(), outOfDate);
    assert.equal(await shown.page.getByRole("progressbar").getAttribute("aria-valuenow"), "30");
});

test("the next good update takes the line away, even one that says nothing new", async () => {
    await shown.show(alerts(posture));
    await shown.dispatch("???");
    await shown.show(alerts(posture));
    assert.equal(await shown.fault(), "");
    assert.equal(await shown.page.locator("#fault").evaluate((line) => line.getBoundingClientRect().height), 0);
});

test("the reason goes to the console, without a word of the payload", async () => {
    const [message] = await Promise.all([
        shown.page.waitForEvent("console"),
        shown.dispatch(Buffer.from('{"secret":').toString("base64")),
    ]);
    assert.equal(message.type(), "warning");
    assert.equal(message.text(), "update-flow: the text is not JSON");
});

test("an event without a detail is a broken update like others", async () => {
    await shown.page.evaluate(() => window.dispatchEvent(new Event("update-flow")));
    assert.equal(await shown.fault(), waiting);
});
