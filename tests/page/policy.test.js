import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alerts, alertsWithSection, blocked, issuesSection, posture, progress, reenroll } from "./support/payloads.js";

const shown = usePage();

const scripts = [
    "page/parts.js",
    "page/texts.js",
    "page/icons.js",
    "page/dom.js",
    "page/address.js",
    "page/payload.js",
    "page/host.js",
    "page/place.js",
    "page/announcement.js",
    "page/views.js",
    "page/entries.js",
    "page/page.js",
];

test("the document holds no script, style or handler of its own", async () => {
    const response = await shown.page.request.get(`${shown.server.origin}/wren/v1/index.html`);
    const html = await response.text();
    assert.ok(!/<style|\sstyle=|\son[a-z]+=|javascript:/i.test(html));
    // No modules: a browser loads none from a disk.
    assert.deepEqual(html.match(/<script[^>]*>[^<]*<\/script>/g), scripts.map((path) => `<script defer src="${path}"></script>`));
});

test("everything is loaded relatively, and from the page's own folder", async () => {
    shown.server.requests.length = 0;
    await shown.load("/wren/v1/index.html");
    await shown.show(progress("Enrolling...", 10));
    await shown.show(alertsWithSection(issuesSection, posture, reenroll, blocked("https://help.example/")));
    const outside = shown.server.requests.filter((path) => !path.startsWith("/wren/v1/"));
    assert.deepEqual(outside, []);
    const html = await (await shown.page.request.get(`${shown.server.origin}/wren/v1/index.html`)).text();
    assert.deepEqual([...html.matchAll(/(?:src|href)="([^"]*)"/g)].map(([, path]) => path), [
        "icon.svg",
        "page.css",
        ...scripts,
        "icon.svg",
    ]);
});

test("the document carries a policy of its own, for hosts that send none", async () => {
    assert.equal(
        await shown.page.locator('meta[http-equiv="Content-Security-Policy"]').getAttribute("content"),
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; base-uri 'none'; form-action 'none'",
    );
});

test("the parts leave one name in the window's scope, and none on the window", async () => {
    const names = (frame) => frame.evaluate(() => Object.getOwnPropertyNames(window));
    const before = await names(shown.page.mainFrame());
    await shown.page.goto(`${shown.server.origin}/none`);
    const bare = await names(shown.page.mainFrame());
    await shown.load("/wren/v1/index.html");
    assert.deepEqual(before.filter((name) => !bare.includes(name)), []);
});

test("nothing is kept in the browser", async () => {
    await shown.show(alerts(reenroll));
    const kept = await shown.page.evaluate(async () => [localStorage.length, sessionStorage.length, document.cookie, history.length]);
    assert.deepEqual(kept.slice(0, 3), [0, 0, ""]);
    await shown.press("Continue");
    assert.equal(await shown.page.evaluate(() => history.length), kept[3]);
});
