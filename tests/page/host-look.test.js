import assert from "node:assert/strict";
import { test } from "node:test";

import { encode } from "./support/browser.js";
import { beginning } from "./support/host-entries.js";
import { enrolling } from "./support/host-machine.js";
import { hello, useHostPage } from "./support/host-page.js";
import { active, button, errorDialog, localPage, login, screen, tile, toast, unenrolled } from "./support/host-screens.js";
import { alertsWithSection, interceptor, issuesSection, posture } from "./support/payloads.js";
import { picture } from "./support/pictures.js";

const shown = useHostPage({ deviceScaleFactor: 1.25 });

const details = encode(alertsWithSection(issuesSection, posture, interceptor));
const told = { hello: hello({ entries: beginning() }) };
const nothing = async () => {};
const tabs = (...names) => async () => {
    for (const name of names) {
        await shown.tab(name);
    }
};
const entry = (text) => async () => {
    await shown.page.locator(".row", { hasText: text }).first().click();
};

/** Every screen that a user can come to: its name, what the host has said, and the way there. */
const screens = [
    ["start", { screen: screen() }, nothing],
    ["unenrolled", { ...told, screen: unenrolled() }, nothing],
    ["active", { ...told, screen: active() }, nothing],
    ["statistics", { ...told, screen: active() }, tabs("Statistics")],
    ["messages", { ...told, screen: active() }, tabs("Messages")],
    [
        "error",
        {
            ...told,
            screen: active({
                parts: [tile("Kestrel Suite error. Contact your IT help desk.", "Details"), ...active().parts.slice(1)],
                tray: { state: "Error", text: "Kestrel Suite error" },
            }),
        },
        nothing,
    ],
    ["dialog", { ...told, screen: unenrolled({ popups: [errorDialog()] }) }, nothing],
    [
        "login",
        { ...told, machine: enrolling, screen: unenrolled({ parts: [tile("Enrolling...", "Cancel"), ...unenrolled().parts.slice(1)], tray: { state: "Transition", text: "Enrolling..." }, popups: [login()] }) },
        nothing,
    ],
    ["cookie", { ...told, screen: unenrolled({ popups: [login({ address: "" })] }) }, nothing],
    [
        "local-page",
        { ...told, screen: active({ popups: [localPage(details)] }) },
        () => shown.page.frameLocator(".browser-frame").getByText("See Details").waitFor(),
    ],
    [
        "toast",
        { ...told, screen: active() },
        () => shown.show(active({ toasts: [toast(1, "Please verify your identity to renew your enrollment and continue access to secure resources.", button("quill_tile_verify_action_toast_btn", "Verify"))] })),
    ],
    ["trace-notice", { ...told, screen: unenrolled() }, entry("update · Attention")],
    ["trace-difference", { ...told, screen: unenrolled() }, entry("active · x")],
    ["trace-log", { ...told, screen: unenrolled() }, entry("Ignoring unexpected")],
    ["machine", { ...told, machine: enrolling, screen: unenrolled() }, tabs("Machine")],
    ["service", { ...told, screen: unenrolled() }, tabs("Service")],
    [
        "service-refusal",
        { ...told, screen: unenrolled() },
        async () => {
            shown.host.refusals.service = "/certificate: 'expird' is none of ok, expired, revoked, rejected, internal_error, unknown";
            await shown.tab("Service");
            await shown.button("Set").click();
            await shown.page.getByText("is none of").scrollIntoViewIfNeeded();
        },
    ],
    [
        "refusal",
        { ...told, screen: unenrolled() },
        async () => {
            shown.host.refusals.press = "the plugin answered -10";
            await shown.button("Enroll").click();
            await shown.page.locator("#problem").waitFor();
        },
    ],
    [
        "goodbye",
        { ...told, screen: active() },
        async () => {
            await shown.say({ type: "goodbye", reason: "The program was interrupted." });
            shown.host.hangUp();
        },
    ],
];

for (const [width, height] of [
    [1280, 800],
    [360, 740],
]) {
    for (const [name, said, way] of screens) {
        test(`${name}, ${width} px wide: nothing is cut off, all text can be read`, async () => {
            const isNarrow = width < 600;
            await shown.page.setViewportSize({ width, height });
            await shown.load(said);
            await way();
            for (const colorScheme of ["light", "dark"]) {
                await shown.page.emulateMedia({ colorScheme });
                await picture(shown.page, `host-${name}-${colorScheme}-${width}`, { fullPage: isNarrow });
                assert.deepEqual(await overflow(), [], colorScheme);
                assert.deepEqual(await faintTexts(), [], colorScheme);
                assert.deepEqual(await smallTargets(isNarrow ? 44 : 24), [], colorScheme);
            }
        });
    }
}

/** What reaches beyond the window's right edge, save inside what scrolls by itself. */
function overflow() {
    return shown.page.evaluate(() => {
        const scrolls = ".tabs, .table-around, .diagram-around, .list, .code, .browser-address, svg, .unseen";
        const wide = [...document.querySelectorAll("body *")].filter(
            (one) => one.checkVisibility() && !one.closest(scrolls) && one.getBoundingClientRect().right > innerWidth + 0.5,
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
            const exempt = text.parentElement.closest(".unseen, script, noscript, svg, :disabled, option");
            if (text.data.trim() && !exempt && text.parentElement.checkVisibility() && ratio(text.parentElement) < 4.5) {
                found.push(`${text.data.trim().slice(0, 40)}: ${ratio(text.parentElement).toFixed(2)}`);
            }
        }
        return found;
    });
}

/** Controls that a finger or a pointer could miss. Links inside a line of text are as high as their line. */
function smallTargets(least) {
    return shown.page.evaluate(
        (size) =>
            [...document.querySelectorAll("button, a, summary, select, input:not([type=checkbox]), label.switch")]
                .filter((one) => one.checkVisibility() && !one.matches(".link, .skip, .browser-link"))
                .map((one) => ({ text: one.outerHTML.slice(0, 90), box: one.getBoundingClientRect() }))
                .filter(({ box }) => box.height < size - 0.5 || box.width < size - 0.5)
                .map(({ text, box }) => `${text} ${box.width}x${box.height}`),
        least,
    );
}
