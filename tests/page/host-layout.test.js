import assert from "node:assert/strict";
import { test } from "node:test";

import { beginning } from "./support/host-entries.js";
import { hello, useHostPage } from "./support/host-page.js";
import { active, errorDialog, login } from "./support/host-screens.js";

const shown = useHostPage();
const told = { hello: hello({ entries: beginning() }), screen: active() };
const splitter = () => shown.page.getByRole("separator", { name: "Width of the user's screen" });
const screenWidth = () => shown.page.locator("#screen").evaluate((one) => one.getBoundingClientRect().width);

test("the page has its landmarks, and one heading of the first rank", async () => {
    await shown.load(told);
    assert.equal(await shown.page.getByRole("banner").count(), 1);
    assert.equal(await shown.page.getByRole("main", { name: "User's screen" }).count(), 1);
    assert.equal(await shown.page.getByRole("region", { name: "Inspector" }).count(), 1);
    assert.equal(await shown.page.getByRole("heading", { level: 1 }).count(), 1);
});

test("the first stop of the keyboard leads past the screen", async () => {
    await shown.load(told);
    await shown.page.keyboard.press("Tab");
    await shown.page.keyboard.press("Enter");
    assert.equal(await shown.page.evaluate(() => document.activeElement.id), "inspector");
});

test("tabs are chosen by the arrow keys", async () => {
    await shown.load(told);
    await shown.page.getByRole("tab", { name: "Trace" }).focus();
    for (const [key, name] of [
        ["ArrowRight", "Machine"],
        ["ArrowRight", "Service"],
        ["ArrowRight", "Trace"],
        ["ArrowLeft", "Service"],
        ["Home", "Trace"],
        ["End", "Service"],
    ]) {
        await shown.page.keyboard.press(key);
        assert.equal(await shown.page.getByRole("tabpanel", { name }).isVisible(), true, key);
        assert.equal(await shown.page.evaluate(() => document.activeElement.textContent), name);
    }
});

test("the two sides are parted by the keyboard and by the pointer", async () => {
    await shown.load(told);
    const before = await screenWidth();
    await splitter().focus();
    await shown.page.keyboard.press("ArrowRight");
    assert.equal((await screenWidth()) > before, true);
    await shown.page.keyboard.press("Home");
    assert.equal(await splitter().getAttribute("aria-valuenow"), "28");
    const box = await splitter().boundingBox();
    await shown.page.mouse.move(box.x + 4, 400);
    await shown.page.mouse.down();
    await shown.page.mouse.move(700, 400);
    await shown.page.mouse.up();
    assert.equal(Math.abs((await screenWidth()) - 700) < 12, true);
});

test("on a narrow window the inspector stands below the screen", async () => {
    await shown.page.setViewportSize({ width: 360, height: 740 });
    await shown.load(told);
    const [screen, inspector] = await shown.page.evaluate(() =>
        ["screen", "inspector"].map((id) => document.getElementById(id).getBoundingClientRect()),
    );
    assert.equal(inspector.top >= screen.bottom - 1, true);
    assert.equal(await splitter().isVisible(), false);
});

test("every control has a name", async () => {
    await shown.load({ ...told, screen: active({ popups: [login({ address: "" }), errorDialog()] }) });
    for (const tab of [null, "tab-machine", "tab-service", "tab-statistics", "tab-messages"]) {
        await shown.page.evaluate((id) => id && document.getElementById(id).click(), tab);
        const nameless = await shown.page.evaluate(() =>
            [...document.querySelectorAll("button, a, input, select, textarea, iframe, [role=tree], [role=treegrid], [role=dialog], dialog")]
                .filter((one) => {
                    const by = one.getAttribute("aria-labelledby");
                    const name =
                        one.getAttribute("aria-label") ??
                        (by ? document.getElementById(by)?.textContent : null) ??
                        (one.labels?.[0]?.textContent || one.title || one.textContent);
                    return !name?.trim();
                })
                .map((one) => one.outerHTML.slice(0, 100)),
        );
        assert.deepEqual(nameless, []);
    }
});

test("no id stands twice", async () => {
    await shown.load({ ...told, screen: active({ popups: [login(), errorDialog()] }) });
    const twice = await shown.page.evaluate(() => {
        const ids = [...document.querySelectorAll("[id]")].map(({ id }) => id);
        return ids.filter((id, index) => ids.indexOf(id) !== index);
    });
    assert.deepEqual(twice, []);
});

test("no element carries a style attribute when the page is loaded, nor a script inside it", async () => {
    await shown.load(told);
    const source = await (await shown.page.request.get(shown.host.address)).text();
    assert.equal(/ style=|<script(?![^>]* src=)|<style| on\w+=/.test(source), false);
});

test("at twice the size of letters nothing is cut off", async () => {
    await shown.page.setViewportSize({ width: 720, height: 900 });
    await shown.load(told);
    await shown.page.evaluate(() => document.documentElement.style.setProperty("font-size", "200%"));
    assert.equal(await shown.page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), true);
});

test("who asked for less motion gets none", async () => {
    const movements = async (reducedMotion) => {
        await shown.page.emulateMedia({ reducedMotion });
        await shown.load({ ...told, screen: active({ tray: { state: "Transition", text: "Enrolling..." } }) });
        return shown.page.evaluate(() => document.getAnimations().length);
    };
    assert.equal((await movements("no-preference")) > 0, true);
    assert.equal(await movements("reduce"), 0);
});
