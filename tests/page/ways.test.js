/**
 * The page as hosts open it: from an origin or from a disk, as a window of its own or in a frame. Everything works in
 * each of these ways, and no part of it breaks the page's own policy.
 */
import assert from "node:assert/strict";
import { pathToFileURL } from "node:url";
import { describe, test } from "node:test";

import { encode, hostOnDisk, usePage } from "./support/browser.js";
import { framingHost, message } from "./support/messages.js";
import { alerts, alertsWithSection, blocked, interceptor, issuesSection, numbered, posture, progress, reenroll } from "./support/payloads.js";
import { pages } from "./support/server.js";

const dispatchInside = (shown, detail) => shown.dispatch(detail);
const messageFromParent = (shown, detail) => message(shown.page, { kind: "update-flow", detail });

for (const [way, site, hand] of [
    ["from an origin", {}, dispatchInside],
    ["in a frame from an origin", { path: "/host.html", frame: "local", extra: { "/host.html": framingHost } }, messageFromParent],
    ["from a disk", { path: `${pathToFileURL(pages)}/wren/v1/index.html` }, dispatchInside],
    ["in a frame from a disk", { path: hostOnDisk, frame: "local" }, dispatchInside],
]) {
    describe(way, () => {
        const shown = usePage({}, site);
        const show = (payload) => hand(shown, encode(payload));

        test("the page waits for its first payload, with its styles and its mark", async () => {
            assert.equal(await shown.heading(), "One moment, please");
            assert.equal(await shown.view.locator(".view").evaluate((one) => getComputedStyle(one).borderTopLeftRadius), "18px");
            assert.ok(await shown.view.locator(".mark").evaluate((one) => one.complete && one.naturalWidth > 0));
        });

        test("an enrollment shows its progress, then the alerts", async () => {
            await show(progress("Enrolling...", 0));
            await show(progress("Almost there...", 60));
            assert.equal(await shown.heading(), "Almost there...");
            assert.equal(await shown.view.getByRole("progressbar").getAttribute("aria-valuenow"), "60");
            await show(alerts());
            assert.equal(await shown.heading(), "Nothing needs your attention");
        });

        test("the user goes from the section to an action, and back", async () => {
            await show(alertsWithSection(issuesSection, posture, interceptor, reenroll));
            await shown.press("See Details");
            await shown.view.locator(".entry").nth(2).click();
            assert.equal(await shown.focused(), "heading");
            await shown.press("Continue");
            await shown.press("Continue");
            assert.deepEqual(await shown.sent(), [{ type: "re-enroll", value: "enrollment-7" }]);
            await shown.press("Back");
            await shown.press("All alerts (3)");
            assert.equal(await shown.focused(), "entry-2");
            await shown.press("Check again");
            assert.deepEqual((await shown.sent()).slice(1), [{ type: "posture-update", value: "" }]);
            await shown.press("Back");
            assert.equal(await shown.where(), "section");
        });

        test("an alert with an address has a link", async () => {
            await show(alerts(blocked("https://help.example/")));
            assert.equal(await shown.view.getByRole("link").getAttribute("href"), "https://help.example/");
        });

        test("an update that can't be read makes one line, which goes with the next", async () => {
            await hand(shown, "???");
            assert.equal(await shown.fault(), "The latest update could not be read. Waiting for the next one.");
            await show(alerts(posture));
            assert.equal(await shown.fault(), "");
            assert.equal(await shown.heading(), "Plover Desktop error");
        });

        test("thousands of alerts are all there", async () => {
            await show(alerts(...numbered(8000)));
            await shown.view.locator("[data-control=entry-7999]").click();
            assert.equal(await shown.heading(), "Alert 7999");
        });
    });
}
