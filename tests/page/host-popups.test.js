import assert from "node:assert/strict";
import { test } from "node:test";

import { encode } from "./support/browser.js";
import { useHostPage } from "./support/host-page.js";
import { active, browserPopup, errorDialog, localPage, login, tile, unenrolled } from "./support/host-screens.js";
import { alerts, posture, progress, reenroll } from "./support/payloads.js";

const shown = useHostPage();

const dialog = () => shown.page.getByRole("dialog", { name: "Norvane Kestrel Suite", exact: true });
const browser = () => shown.page.getByRole("dialog", { name: "Norvane Kestrel Suite - Wren Gate" });
const frame = () => shown.page.frameLocator(".browser-frame");
const focused = () =>
    shown.page.evaluate(() => document.activeElement.dataset.control ?? document.activeElement.getAttribute("aria-label") ?? document.activeElement.id);

test("the error dialog shows its texts, its button and takes the focus", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.show(unenrolled({ popups: [errorDialog("Header", "Details")] }));
    assert.deepEqual(await dialog().locator("p").allInnerTexts(), ["Header", "Details"]);
    assert.equal(await focused(), "wren_client_error_close_btn");
});

test("the error dialog keeps the focus within itself", async () => {
    await shown.load({ screen: unenrolled({ popups: [errorDialog()] }) });
    for (const [key, where] of [
        ["Tab", "Close"],
        ["Tab", "wren_client_error_close_btn"],
        ["Shift+Tab", "Close"],
        ["Shift+Tab", "wren_client_error_close_btn"],
    ]) {
        await shown.page.keyboard.press(key);
        assert.equal(await focused(), where, key);
    }
});

test("nothing beside the error dialog can be pressed", async () => {
    await shown.load({ screen: unenrolled({ popups: [errorDialog()] }) });
    await assert.rejects(shown.button("Enroll").click({ timeout: 300 }));
});

test("the error dialog's button presses its control", async () => {
    await shown.load({ screen: unenrolled({ popups: [errorDialog()] }) });
    await dialog().locator("[data-control=wren_client_error_close_btn]").click();
    assert.deepEqual(await shown.host.next(), { do: "press", control: "wren_client_error_close_btn", event: "OnPress" });
});

test("Escape asks to close the error dialog, which stays until the module takes it away", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.button("Enroll").focus();
    await shown.show(unenrolled({ popups: [errorDialog()] }));
    await shown.page.keyboard.press("Escape");
    await shown.page.keyboard.press("Escape");
    assert.deepEqual(await shown.host.next(), { do: "close", popup: "wren_client_error_dialog" });
    assert.equal(await dialog().isVisible(), true);
    await shown.show(unenrolled());
    assert.equal(await dialog().count(), 0);
    assert.equal(await focused(), "quill_tile_enroll_action_btn");
});

test("an error that takes another's place is shown in the open dialog", async () => {
    await shown.load({ screen: unenrolled({ popups: [errorDialog()] }) });
    await shown.show(unenrolled({ popups: [errorDialog("Another", "And its details")] }));
    assert.deepEqual(await dialog().locator("p").allInnerTexts(), ["Another", "And its details"]);
});

test("a login page stands in a frame that may send its form and nothing else", async () => {
    await shown.load({ screen: unenrolled({ popups: [login()] }) });
    assert.equal(await frame().locator("h1").innerText(), "Example Corp");
    assert.equal(await shown.page.locator(".browser-frame").getAttribute("sandbox"), "allow-forms allow-same-origin");
    assert.equal(await browser().locator(".browser-address").innerText(), "https://login.example.test/enroll?login=enrollment-1");
});

test("an update leaves the login page as its user has filled it in", async () => {
    await shown.load({ screen: unenrolled({ popups: [login()] }) });
    await frame().getByLabel("Name").fill("robin");
    await shown.show(active({ popups: [login()] }));
    assert.equal(await frame().getByLabel("Name").inputValue(), "robin");
});

test("another page in the same popup is loaded anew", async () => {
    await shown.load({ screen: unenrolled({ popups: [login()] }) });
    await frame().getByLabel("Name").fill("robin");
    await shown.show(unenrolled({ popups: [login({ number: 2, address: "browser/2/" })] }));
    assert.equal(await frame().getByLabel("Name").inputValue(), "");
});

test("a browser's close button and Escape ask to close it", async () => {
    await shown.load({ screen: unenrolled({ popups: [login()] }) });
    await shown.button("Close", browser()).click();
    assert.deepEqual(await shown.host.next(), { do: "close", popup: "quill_enrollment_browser_dialog" });
    await shown.page.keyboard.press("Escape");
    assert.deepEqual(await shown.host.next(), { do: "close", popup: "quill_enrollment_browser_dialog" });
});

test("a page that doesn't load is reported", async () => {
    await shown.load({ screen: unenrolled({ popups: [login()] }) });
    await shown.button("It doesn't load").click();
    assert.deepEqual(await shown.host.next(), {
        do: "browse_error",
        popup: "quill_enrollment_browser_dialog",
        error: "The page could not be loaded.",
    });
});

test("a login that can't stand in a frame is a link, and its cookie is brought back by hand", async () => {
    await shown.load({ screen: unenrolled({ popups: [login({ address: "" })] }) });
    const link = browser().getByRole("link");
    assert.equal(await link.getAttribute("href"), "https://login.example.test/enroll?login=enrollment-1");
    assert.equal(await link.getAttribute("rel"), "noopener noreferrer");
    await browser().getByLabel("Value of the cookie").fill("a=b; c");
    await shown.button("Send the cookie").click();
    assert.deepEqual(await shown.host.next(), { do: "cookie", popup: "quill_enrollment_browser_dialog", value: "a=b; c" });
});

test("an address that runs a script is no link", async () => {
    await shown.load({ screen: unenrolled({ popups: [login({ address: "", start_url: "javascript:document.title=1" })] }) });
    assert.equal(await browser().getByRole("link").count(), 0);
    assert.equal(await browser().getByText("javascript:document.title=1").last().isVisible(), true);
});

test("a page that is only to be looked at asks for no cookie", async () => {
    await shown.load({ screen: unenrolled({ popups: [login({ address: "", operation: "browse" })] }) });
    assert.equal(await browser().locator("input").count(), 0);
});

test("the local page gets its payload when it has loaded, and each new one", async () => {
    await shown.load({ screen: active({ popups: [localPage(encode(alerts(posture)))] }) });
    await frame().getByRole("heading", { name: "Plover Desktop error" }).waitFor();
    await shown.show(active({ popups: [localPage(encode(progress("Enrolling...", 50)), 2, { operation: "dispatch_event" })] }));
    await frame().getByRole("heading", { name: "Enrolling..." }).waitFor();
});

test("a popup that is raised again shows the page that it has", async () => {
    const popup = localPage(encode(alerts(reenroll)));
    await shown.load({ screen: active({ popups: [popup] }) });
    await frame().getByRole("button", { name: "Continue" }).click();
    await shown.show(active({ popups: [{ ...popup, number: 7 }] }));
    assert.equal(await frame().locator("article").getAttribute("data-page"), "action");
    assert.equal(await shown.page.evaluate(() => document.activeElement.dataset.popup), "quill_alert_browser_dialog");
});

test("a page that joins late gets the payload of then", async () => {
    await shown.load({ screen: active({ popups: [localPage(encode(alerts(posture)), 9, { operation: "dispatch_event" })] }) });
    await frame().getByRole("heading", { name: "Plover Desktop error" }).waitFor();
});

test("what the local page tells goes to the host", async () => {
    await shown.load({ screen: active({ popups: [localPage(encode(alerts(reenroll)))] }) });
    await frame().getByRole("button", { name: "Continue" }).click();
    await frame().getByRole("button", { name: "Continue" }).click();
    assert.deepEqual(await shown.host.next(), {
        do: "page_event",
        popup: "quill_alert_browser_dialog",
        type: "re-enroll",
        value: "enrollment-7",
    });
});

test("a message that doesn't come from the frame is not the local page's", async () => {
    await shown.load({ screen: active({ popups: [localPage(encode(alerts(reenroll)))] }) });
    await frame().getByRole("button", { name: "Continue" }).waitFor();
    await shown.page.evaluate(() => window.postMessage({ kind: "kestrel-suite-event", type: "re-enroll", value: "x" }, window.origin));
    await shown.settle();
    assert.deepEqual(shown.host.requests, []);
});

test("the popup in front is the last one, and neither of them loads anew when that changes", async () => {
    const one = login();
    const other = localPage(encode(alerts(posture)));
    const front = () =>
        shown.page.evaluate(() => {
            const order = [...document.querySelectorAll(".browser")].sort((a, b) => a.style.zIndex - b.style.zIndex);
            return order.map(({ dataset }) => dataset.popup);
        });
    await shown.load({ screen: active({ popups: [one, other] }) });
    await shown.page.frameLocator("[data-shows=login] iframe").getByLabel("Name").fill("robin");
    assert.deepEqual(await front(), [one.id, other.id]);
    await shown.show(active({ popups: [other, { ...one, number: 3 }] }));
    assert.deepEqual(await front(), [other.id, one.id]);
    assert.equal(await shown.page.frameLocator("[data-shows=login] iframe").getByLabel("Name").inputValue(), "robin");
});

test("when a browser goes, the focus is back where it was", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.button("Enroll").focus();
    await shown.show(unenrolled({ popups: [login()] }));
    await shown.show(unenrolled());
    assert.equal(await focused(), "quill_tile_enroll_action_btn");
    assert.equal(await browser().count(), 0);
});

test("an address that no browser can open is a text", async () => {
    const popup = browserPopup("another_dialog", { operation: "browse", start_url: "about:blank" });
    await shown.load({ screen: active({ popups: [popup] }) });
    assert.deepEqual(await browser().locator(".browser-body p").allInnerTexts(), [
        "This page can't be shown here. Open it in a window of its own.",
        "about:blank",
    ]);
});

for (const [width, height] of [[1280, 800], [360, 740]]) {
    test(`while a login is open, the tile's buttons can be pressed, ${width} px wide`, async () => {
        await shown.page.setViewportSize({ width, height });
        const enrolling = [tile("Enrolling...", "Cancel"), ...unenrolled().parts.slice(1)];
        await shown.load({ screen: unenrolled({ parts: enrolling, popups: [login()] }) });
        await shown.button("Cancel").click();
        assert.deepEqual(await shown.host.next(), { do: "press", control: "quill_tile_cancel_action_btn", event: "OnPress" });
    });
}
