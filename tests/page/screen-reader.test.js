import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alerts, alertsWithSection, blocked, interceptor, issuesSection, posture, progress, reenroll } from "./support/payloads.js";

const shown = usePage();

const outline = (selector) => shown.page.locator(selector).ariaSnapshot();
const lines = (...texts) => texts.join("\n");

const several = alertsWithSection(issuesSection, posture, blocked("https://help.example/"), reenroll);

test("the page has a banner and a main part, and says what it is before anything has come", async () => {
    assert.equal(
        await outline("body"),
        lines(
            "- banner: Wren Gate",
            "- status",
            "- main:",
            '  - article "One moment, please":',
            '    - heading "One moment, please" [level=1]',
            "    - paragraph: Waiting for news from Wren Gate.",
            "- status",
        ),
    );
});

test("the list, as a screen reader hears it", async () => {
    await shown.show(several);
    await shown.press("See Details");
    assert.equal(
        await outline("body"),
        lines(
            "- banner:",
            "  - text: Wren Gate",
            '  - navigation "Back":',
            '    - button "Back"',
            "- status",
            "- main:",
            '  - article "Issues affecting secure resource access":',
            '    - heading "Issues affecting secure resource access" [level=1]',
            "    - paragraph: Resolve the following issues or contact your IT help desk.",
            "    - list:",
            "      - listitem:",
            '        - button "Plover Desktop error Try relaunching Plover Desktop App."',
            "      - listitem:",
            '        - button "Access blocked Access to secure resource is blocked. Contact your IT help desk."',
            "      - listitem:",
            '        - button "Verify your identity Please verify your identity to renew your enrollment and continue access to secure resources."',
            '    - button "Check again"',
            "    - paragraph: Asks for a new check of this device.",
            "- status: 3 alerts.",
        ),
    );
});

test("an alert with a link", async () => {
    await shown.show(alerts(blocked("https://help.example/")));
    assert.equal(
        await outline("main"),
        lines(
            "- main:",
            '  - article "Access blocked":',
            '    - heading "Access blocked" [level=1]',
            "    - paragraph: Access to secure resource is blocked. Contact your IT help desk.",
            '    - link "See Details":',
            "      - /url: https://help.example/",
            "    - paragraph: Leads to https://help.example/",
            '    - button "Check again"',
            "    - paragraph: Asks for a new check of this device.",
        ),
    );
});

test("the page of an action, once its event is sent", async () => {
    await shown.show(alerts(reenroll));
    await shown.press("Continue");
    await shown.press("Continue");
    assert.equal(
        await outline("body"),
        lines(
            "- banner:",
            "  - text: Wren Gate",
            '  - navigation "Back":',
            '    - button "Back"',
            "- status",
            "- main:",
            '  - article "Verify your identity":',
            '    - heading "Verify your identity" [level=1]',
            "    - paragraph: Enrollment will continue in a new window.",
            '    - button "Continue"',
            "    - paragraph: Requested. Please go on in the window that opens.",
            "- status: Requested. Please go on in the window that opens.",
        ),
    );
});

test("an enrollment's progress", async () => {
    await shown.show(progress("Enrolling...", 40));
    assert.equal(
        await outline("main"),
        lines(
            "- main:",
            '  - article "Enrolling...":',
            '    - heading "Enrolling..." [level=1]',
            '    - progressbar "Enrolling..."',
            "    - paragraph: This can take a few minutes. The window keeps itself up to date.",
        ),
    );
});

test("the browser gives the progress bar's value on to assistive programs", async () => {
    await shown.show(progress("Enrolling...", 40));
    const session = await shown.context.newCDPSession(shown.page);
    const { nodes } = await session.send("Accessibility.getFullAXTree");
    const bar = nodes.find(({ role }) => role?.value === "progressbar");
    const properties = Object.fromEntries(bar.properties.map(({ name, value }) => [name, value.value]));
    assert.deepEqual(
        [bar.name.value, bar.value.value, properties.valuemin, properties.valuemax],
        ["Enrolling...", 40, 0, 100],
    );
    await session.detach();
});

test("controls are described by the words beside them", async () => {
    await shown.show(alerts(blocked("https://help.example/")));
    const described = (selector) =>
        shown.page.locator(selector).evaluate((control) => document.getElementById(control.getAttribute("aria-describedby")).textContent);
    assert.equal(await described("main a"), "Leads to https://help.example/");
    assert.equal(await described("[data-control=check]"), "Asks for a new check of this device.");
});

test("each page has exactly one main heading, of the first level, and the focus goes to it", async () => {
    const path = ["open-list", "entry-2", "action-0"];
    await shown.show(several);
    for (;;) {
        assert.equal(await shown.page.getByRole("heading").count(), 1);
        assert.equal(await shown.page.getByRole("heading", { level: 1 }).count(), 1);
        assert.equal(await shown.focused(), "heading");
        if (path.length === 0) {
            return;
        }
        await shown.page.locator(`[data-control="${path.shift()}"]`).click();
    }
});

test("what changes by itself is announced politely, from regions that were there before", async () => {
    const regions = () =>
        shown.page.getByRole("status").evaluateAll((all) => all.map((region) => `${region.id} ${region.getAttribute("aria-live")}`));
    assert.deepEqual(await regions(), ["fault polite", "announcer polite"]);
    const handles = await shown.page.getByRole("status").elementHandles();
    await shown.show(alerts(interceptor));
    await shown.dispatch("???");
    assert.deepEqual(await regions(), ["fault polite", "announcer polite"]);
    for (const handle of handles) {
        assert.ok(await handle.evaluate((region) => region.isConnected));
    }
    assert.equal(await shown.announced(), "1 alert: Network interceptor error");
});

test("drawings are left out, whatever they stand beside", async () => {
    await shown.show(several);
    await shown.press("See Details");
    assert.equal(await shown.page.locator('svg:not([aria-hidden="true"])').count(), 0);
    assert.equal(await shown.page.getByRole("img").count(), 0);
});

test("the document names its language, and each text of a payload finds its own direction", async () => {
    assert.equal(await shown.page.locator("html").getAttribute("lang"), "en");
    await shown.show(alerts({ title: "הגישה נחסמה", shortDescription: "", longDescription: "Access is blocked." }));
    const directions = await shown.page.locator("main [dir=auto]").evaluateAll((all) => all.map((one) => getComputedStyle(one).direction));
    assert.deepEqual(directions, ["rtl", "ltr"]);
});
