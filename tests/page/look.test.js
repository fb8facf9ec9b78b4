import assert from "node:assert/strict";
import { test } from "node:test";

import { encode, usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, blocked, interceptor, issuesSection, local, posture, progress, reenroll, remote } from "./support/payloads.js";
import { picture } from "./support/pictures.js";

const shown = usePage({ deviceScaleFactor: 1.5 });

const several = alertsWithSection(issuesSection, posture, interceptor, blocked("https://help.example/access?id=42"), reenroll);
const unsafe = alerts(blocked("file:///c:/help.txt", "Read more"));

const press = (...controls) => async () => {
    for (const control of controls) {
        await shown.page.locator(`[data-control="${control}"]`).click();
    }
};
const nothing = async () => {};
const breakUpdate = () => shown.dispatch("???");

/** Every page that a user can come to: its name, the payload and the way there. */
const screens = [
    ["waiting", null, nothing],
    ["progress", progress("Enrolling...", 0), nothing],
    ["progress-half", progress("Enrolling...", 50), nothing],
    ["clear", alerts(), nothing],
    ["section", several, nothing],
    ["list", several, press("open-list")],
    ["list-checked", several, press("open-list", "check")],
    ["alert", several, press("open-list", "entry-0")],
    ["link", several, press("open-list", "entry-2")],
    ["address", unsafe, nothing],
    ["identity", alerts(reenroll), nothing],
    ["action", alerts(reenroll), press("action-0")],
    ["action-sent", alerts(reenroll), press("action-0", "send")],
    ["broken-update", alerts(posture), breakUpdate],
];

async function goThere(payload, way) {
    if (payload !== null) {
        await shown.show(payload);
    }
    await way();
}

for (const [width, height] of [
    [560, 720],
    [360, 640],
]) {
    for (const [name, payload, way] of screens) {
        test(`${name}, ${width} px wide: nothing is cut off, all text can be read, all targets be hit`, async () => {
            await shown.page.setViewportSize({ width, height });
            await goThere(payload, way);
            for (const colorScheme of ["light", "dark"]) {
                await shown.page.emulateMedia({ colorScheme });
                await picture(shown.page, `page-${name}-${colorScheme}-${width}`, { fullPage: true });
                assert.deepEqual(await overflow(), [], colorScheme);
                assert.deepEqual(await faintTexts(), [], colorScheme);
                assert.deepEqual(await smallTargets(), [], colorScheme);
            }
        });
    }
}

/** What reaches beyond the window's right edge, or is cut off inside its own box. */
function overflow() {
    return shown.page.evaluate(() => {
        const wide = [...document.querySelectorAll("body *")].filter(
            (one) => one.checkVisibility() && !one.closest("svg, .unseen, .meter") && one.getBoundingClientRect().right > innerWidth,
        );
        const page = document.documentElement.scrollWidth > innerWidth ? ["the page"] : [];
        return [...page, ...wide.map((one) => one.outerHTML.slice(0, 80))];
    });
}

/** Texts whose contrast with their ground is below 4.5 to 1. */
function faintTexts() {
    return shown.page.evaluate(() => {
        const canvas = document.createElement("canvas").getContext("2d", { willReadFrequently: true });
        const luminance = (colours) => {
            canvas.clearRect(0, 0, 1, 1);
            for (const colour of colours) {
                canvas.fillStyle = colour;
                canvas.fillRect(0, 0, 1, 1);
            }
            const [red, green, blue] = [...canvas.getImageData(0, 0, 1, 1).data].map((byte) => {
                const share = byte / 255;
                return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
            });
            return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
        };
        const grounds = (one) => (one ? [...grounds(one.parentElement), getComputedStyle(one).backgroundColor] : []);
        const ratio = (one) => {
            const ground = luminance(grounds(one));
            const ink = luminance([...grounds(one), getComputedStyle(one).color]);
            return (Math.max(ground, ink) + 0.05) / (Math.min(ground, ink) + 0.05);
        };
        const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
        const found = [];
        for (let text = walker.nextNode(); text; text = walker.nextNode()) {
            if (text.data.trim() && !text.parentElement.closest(".unseen, script, noscript") && ratio(text.parentElement) < 4.5) {
                found.push(`${text.data.trim().slice(0, 40)}: ${ratio(text.parentElement).toFixed(2)}`);
            }
        }
        return found;
    });
}

/** Controls that a finger could miss. */
function smallTargets() {
    return shown.page.evaluate(() =>
        [...document.querySelectorAll("button, a")]
            .map((one) => ({ text: one.innerText, box: one.getBoundingClientRect() }))
            .filter(({ box }) => box.height < 44 || box.width < 44)
            .map(({ text }) => text),
    );
}

test("at 360 px even words without an end are kept on the page", async () => {
    const endless = "Donaudampfschifffahrt".repeat(20);
    const longAddress = `https://help.example/${"a".repeat(400)}`;
    await shown.page.setViewportSize({ width: 360, height: 640 });
    for (const [payload, way] of [
        [progress(endless, 50), nothing],
        [alerts(alert(endless, endless, endless)), nothing],
        [alerts(alert(endless, "", "", remote(endless, longAddress))), nothing],
        [alerts(alert(endless, "", "", remote(endless, `file:${longAddress}`))), nothing],
        [alerts(alert(endless, "", "", local(endless, endless, endless, "re-enroll", "e"))), press("action-0", "send")],
        [alerts(alert(endless, endless, endless), alert(endless, "", endless)), press("check")],
    ]) {
        await goThere(payload, way);
        assert.deepEqual(await overflow(), []);
    }
});

test("at twice the size of letters nothing is cut off", async () => {
    await shown.page.setViewportSize({ width: 360, height: 640 });
    for (const [, payload, way] of screens) {
        await shown.load("/wren/v1/index.html");
        await shown.page.evaluate(() => document.documentElement.style.setProperty("font-size", "200%"));
        await goThere(payload, way);
        assert.deepEqual(await overflow(), []);
    }
});

test("who asked for less motion gets none", async () => {
    const movements = () => shown.page.evaluate(() => document.getAnimations().length);
    for (const [motion, moves] of [["no-preference", true], ["reduce", false]]) {
        await shown.page.emulateMedia({ reducedMotion: motion });
        await shown.load("/wren/v1/index.html");
        assert.equal((await movements()) > 0, moves, "while waiting");
        // In one turn, so that a movement that has begun can't have ended before it is looked for.
        const counts = await shown.page.evaluate((details) => {
            return details.map((detail) => {
                window.dispatchEvent(new CustomEvent("update-flow", { detail }));
                return document.getAnimations().length;
            });
        }, [progress("Enrolling...", 0), progress("Enrolling...", 60), alerts(posture)].map(encode));
        assert.deepEqual(counts.map((count) => count > 0), [moves, moves, moves]);
    }
});

test("where the system picks the colours, controls keep an edge", async () => {
    await shown.page.emulateMedia({ forcedColors: "active" });
    await goThere(alerts(reenroll), press("action-0", "send"));
    for (const selector of [".primary", ".note", ".badge"]) {
        assert.equal(await shown.page.locator(selector).evaluate((one) => getComputedStyle(one).borderTopStyle), "solid");
    }
    await picture(shown.page, "page-forced-colors");
    await shown.page.emulateMedia({ forcedColors: "none" });
});

test("light and dark differ, and each says which it is to the browser", async () => {
    const ground = () => shown.page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    await shown.page.emulateMedia({ colorScheme: "light" });
    const light = await ground();
    await shown.page.emulateMedia({ colorScheme: "dark" });
    assert.notEqual(await ground(), light);
    assert.equal(await shown.page.evaluate(() => getComputedStyle(document.documentElement).colorScheme), "light dark");
});
