import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alerts, posture, progress } from "./support/payloads.js";

const shown = usePage({ reducedMotion: "no-preference" });

const bar = () => shown.page.getByRole("progressbar");

async function assertBar(percent) {
    assert.deepEqual(
        await bar().evaluate((meter) =>
            ["aria-valuemin", "aria-valuemax", "aria-valuenow"].map((name) => meter.getAttribute(name)),
        ),
        ["0", "100", String(percent)],
    );
    assert.equal(await shown.page.locator(".percent").innerText(), `${percent}%`);
}

/** The share of the bar that is filled, once it has come to rest. */
async function filled() {
    return bar().evaluate(async (meter) => {
        await Promise.all(meter.firstElementChild.getAnimations().map((animation) => animation.finished));
        const [whole, part] = [meter.getBoundingClientRect(), meter.firstElementChild.getBoundingClientRect()];
        return Math.round((100 * (part.right - whole.left)) / whole.width);
    });
}

for (const percent of [0, 1, 40, 99, 100]) {
    test(`an enrollment at ${percent}% shows its title, its number and its bar`, async () => {
        await shown.show(progress("Enrolling...", percent));
        assert.equal(await shown.where(), "progress");
        assert.equal(await shown.heading(), "Enrolling...");
        await assertBar(percent);
        assert.equal(await filled(), percent);
    });
}

test("more than a hundred percent fills the bar and no more", async () => {
    await shown.show(progress("Enrolling...", 250));
    await assertBar(100);
    assert.equal(await filled(), 100);
});

test("an enrollment without a title still has a heading", async () => {
    await shown.show(progress("", 0));
    assert.equal(await shown.heading(), "Enrolling");
});

test("a later percentage moves the same bar", async () => {
    await shown.show(progress("Enrolling...", 10));
    const first = await bar().elementHandle();
    await shown.show(progress("Almost there...", 60));
    assert.equal(await shown.heading(), "Almost there...");
    assert.equal(await shown.page.title(), "Almost there... - Wren Gate");
    await assertBar(60);
    assert.equal(await filled(), 60);
    assert.ok(await first.evaluate((meter) => meter.isConnected));
});

test("something moves while there is something to wait for, and rests at the end", async () => {
    const moving = () =>
        bar().evaluate((meter) => meter.getAnimations({ subtree: true }).filter(({ animationName }) => animationName === "sweep").length);
    await shown.show(progress("Enrolling...", 0));
    assert.equal(await moving(), 1);
    await shown.show(progress("Enrolling...", 100));
    assert.equal(await moving(), 0);
});

test("progress is announced with its title at first, then each ten percent", async () => {
    const announced = [];
    for (const percent of [0, 4, 9, 10, 17, 30]) {
        await shown.show(progress("Enrolling...", percent));
        announced.push(await shown.announced());
    }
    assert.deepEqual(announced, [
        "Enrolling... 0%",
        "Enrolling... 0%",
        "Enrolling... 0%",
        "Enrolling... 10%",
        "Enrolling... 10%",
        "Enrolling... 30%",
    ]);
});

test("a new title is announced at any percentage", async () => {
    await shown.show(progress("Enrolling...", 0));
    await shown.show(progress("Almost there...", 1));
    assert.equal(await shown.announced(), "Almost there... 1%");
});

test("alerts take the place of an enrollment, and an enrollment that of alerts", async () => {
    await shown.show(progress("Enrolling...", 0));
    await shown.show(alerts(posture));
    assert.equal(await shown.heading(), "Plover Desktop error");
    await shown.show(progress("Enrolling...", 0));
    assert.equal(await shown.heading(), "Enrolling...");
    await assertBar(0);
});
