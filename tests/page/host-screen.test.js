import assert from "node:assert/strict";
import { test } from "node:test";

import { useHostPage } from "./support/host-page.js";
import { active, button, label, screen, tile, toast, unenrolled } from "./support/host-screens.js";

const shown = useHostPage();

const mainWindow = () => shown.page.getByRole("region", { name: "Main window" });
const buttons = async (within) => (await within.getByRole("button").allInnerTexts()).filter(Boolean);
const focused = () => shown.page.evaluate(() => document.activeElement.dataset.control ?? document.activeElement.id);

test("before the module has drawn anything, the windows say so", async () => {
    await shown.load({ screen: screen() });
    assert.equal(await mainWindow().innerText(), "The module has not drawn its tile yet.");
    assert.equal(await shown.page.locator("#tray .tray").isVisible(), false);
});

test("the tile shows its title, its status line and the buttons that are not hidden", async () => {
    await shown.load({ screen: unenrolled() });
    assert.deepEqual(await mainWindow().locator(".label").allInnerTexts(), [
        "Wren Gate",
        "Registration is required to access secure resources.",
    ]);
    assert.deepEqual(await buttons(mainWindow()), ["Enroll"]);
});

test("a label that is hidden takes no room", async () => {
    const part = tile("Wren Gate is active.");
    part.controls[1] = label("simple_status", "", { hidden: true });
    await shown.load({ screen: active({ parts: [part] }) });
    assert.equal(await mainWindow().locator(".label").count(), 1);
});

test("a button that is disabled is there and can't be pressed", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.button("Unenroll").click({ force: true });
    await shown.button("Enroll").click();
    assert.deepEqual(await shown.host.next(), { do: "press", control: "quill_tile_enroll_action_btn", event: "OnPress" });
    assert.equal(await shown.button("Unenroll").isDisabled(), true);
});

test("a double click is one press", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.button("Enroll").dblclick();
    await shown.settle();
    assert.equal(shown.host.requests.length, 1);
});

test("a press that is refused says why, until the next one that isn't", async () => {
    await shown.load({ screen: unenrolled() });
    shown.host.refusals.press = "the plugin answered -10";
    await shown.button("Enroll").click();
    const problem = shown.page.getByRole("alert");
    await problem.waitFor();
    assert.equal(await problem.innerText(), "the plugin answered -10");
    shown.host.refusals = {};
    await shown.button("Enroll").click();
    await problem.waitFor({ state: "hidden" });
});

for (const [state, tone] of [
    ["Error", "error"],
    ["Attention", "attention"],
    ["NonCompliant", "attention"],
    ["Transition", "calm"],
    ["Neutral", "neutral"],
    ["Trusted", "good"],
    ["Good", "good"],
    ["Paused", "neutral"],
    ["Something else", "neutral"],
    ["constructor", "neutral"],
]) {
    test(`the tray state "${state}" looks ${tone}, on the tile and in the tray`, async () => {
        await shown.load({ screen: active({ tray: { state, text: "Tray text" } }) });
        assert.equal(await mainWindow().locator(".badge").getAttribute("data-tone"), tone);
        const tray = shown.page.locator("#tray .tray");
        assert.equal(await tray.getAttribute("data-tone"), tone);
        assert.equal(await tray.textContent(), `Tray icon, ${state}: Tray text`);
    });
}

test("a label takes the colour that the notices give it; black is the usual one", async () => {
    const part = tile("Wren Gate is active.");
    part.controls[1].attributes.color = "rgb(10, 20, 30)";
    await shown.load({ screen: active({ parts: [part] }) });
    const colour = (index) => mainWindow().locator(".label").nth(index).evaluate((one) => getComputedStyle(one).color);
    assert.equal(await colour(1), "rgb(10, 20, 30)");
    assert.notEqual(await colour(0), "rgb(0, 0, 0)");
});

test("a text of the notices is never markup", async () => {
    await shown.load({ screen: unenrolled({ parts: [tile('<img src=x onerror="document.title=1">', "Enroll")] }) });
    assert.equal(await mainWindow().locator(".label").nth(1).innerText(), '<img src=x onerror="document.title=1">');
    assert.equal(await mainWindow().locator("img").count(), 0);
});

test("an update leaves the focus on the button that has it", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.button("Enroll").focus();
    await shown.show(unenrolled({ parts: [tile("Another text.", "Enroll", "Details")] }));
    assert.equal(await focused(), "quill_tile_enroll_action_btn");
});

test("when the focused button goes, the next one takes the focus, and else the heading of the screen", async () => {
    await shown.load({ screen: unenrolled() });
    await shown.button("Enroll").focus();
    await shown.show(unenrolled({ parts: [tile("Enrolling...", "Cancel")] }));
    assert.equal(await focused(), "quill_tile_cancel_action_btn");
    await shown.show(active());
    assert.equal(await focused(), "screen-heading");
});

test("a new status line is told by a live region", async () => {
    await shown.load({ screen: unenrolled() });
    const region = mainWindow().getByRole("status");
    assert.equal(await region.getByText("Registration is required to access secure resources.").isVisible(), true);
});

test("the groups show what the notices show, in its order", async () => {
    await shown.load({ screen: active() });
    const group = shown.page.getByRole("region", { name: "Configuration Synchronization:" });
    assert.deepEqual(await group.locator("p, button").allInnerTexts(), [
        "Configuration Synchronization:",
        "Sync your device to get the latest updates from your organization.",
        "Last successful sync:",
        "11/21/26 08:00:03",
        "Sync now",
    ]);
    await shown.button("Sync now").click();
    assert.deepEqual(await shown.host.next(), { do: "press", control: "quill_config_sync_btn", event: "OnPress" });
});

test("windows that the module hides are gone, and the tray icon brings them back", async () => {
    await shown.load({ screen: active() });
    await shown.show(active({ window: "hidden" }));
    assert.equal(await mainWindow().isVisible(), false);
    assert.equal(await shown.page.getByText("The module has hidden the windows.").isVisible(), true);
    const tray = shown.page.locator("#tray .tray");
    assert.equal(await tray.getAttribute("aria-expanded"), "false");
    await tray.click();
    assert.equal(await mainWindow().isVisible(), true);
    await shown.show(active({ window: "hidden", history: [] }));
    assert.equal(await mainWindow().isVisible(), true, "what was said before is not said anew");
});

test("being hidden once more counts, also for windows that the user has opened since", async () => {
    await shown.load({ screen: active({ window: "hidden" }) });
    await shown.page.locator("#tray .tray").click();
    const xml = '<vtguiNotice type="update"><application show="false"/></vtguiNotice>';
    await shown.say({ type: "entries", entries: [{ seq: 1, time: 0, thread: 1, input: 0, out: "notice", xml }] });
    assert.equal(await mainWindow().isVisible(), false);
});

test("the newest message stands first, and messages can be cleared", async () => {
    await shown.load({ screen: active() });
    await shown.tab("Messages");
    const texts = await shown.page.locator(".messages li span").allInnerTexts();
    assert.deepEqual(texts, ["Wren Gate is active.", "Enrolling...", "Initializing. Please wait..."]);
    await shown.button("Clear messages").click();
    assert.deepEqual(await shown.host.next(), { do: "clear_history" });
    await shown.show(active({ history: [] }));
    assert.equal(await shown.page.locator("#messages").innerText(), "No messages.");
});

test("toasts that were there before the page are old", async () => {
    await shown.load({ screen: active({ toasts: [toast(3, "Old")] }) });
    assert.equal(await shown.page.locator(".toast").count(), 0);
    await shown.show(active({ toasts: [toast(3, "Old"), toast(4, "New")] }));
    assert.deepEqual(await shown.page.locator(".toast p").allInnerTexts(), ["Verify your identity", "New"]);
    await shown.show(active({ toasts: [toast(3, "Old"), toast(4, "New")] }));
    assert.equal(await shown.page.locator(".toast").count(), 1);
});

test("a toast's button presses its control, and the toast is done with", async () => {
    await shown.load({ screen: active() });
    await shown.show(active({ toasts: [toast(1, "Text", button("quill_tile_verify_action_toast_btn", "Verify"))] }));
    await shown.button("Verify", shown.page.locator(".toast")).click();
    assert.deepEqual(await shown.host.next(), { do: "press", control: "quill_tile_verify_action_toast_btn", event: "OnPress" });
    assert.equal(await shown.page.locator(".toast").count(), 0);
});

test("a toast goes by itself, unless the pointer is on it", async () => {
    await shown.page.clock.install();
    await shown.load({ screen: active() });
    shown.host.say({ type: "screen", screen: active({ toasts: [toast(1, "Text")] }) });
    await shown.page.locator(".toast").hover();
    await shown.page.clock.fastForward(60000);
    assert.equal(await shown.page.locator(".toast").count(), 1);
    await shown.page.mouse.move(900, 300);
    await shown.page.clock.fastForward(60000);
    assert.equal(await shown.page.locator(".toast").count(), 0);
});

test("a toast can be dismissed", async () => {
    await shown.load({ screen: active() });
    await shown.show(active({ toasts: [toast(1, "Text")] }));
    await shown.button("Dismiss").click();
    assert.equal(await shown.page.locator(".toast").count(), 0);
});

test("hidden windows are opened by the button in their place, too", async () => {
    await shown.load({ screen: active({ window: "hidden" }) });
    await shown.button("Open them").click();
    assert.equal(await mainWindow().isVisible(), true);
    assert.equal(await focused(), "screen-heading");
});
