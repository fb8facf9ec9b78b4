import assert from "node:assert/strict";
import { test } from "node:test";

import { usePage } from "./support/browser.js";
import { alerts, alertsWithSection, blocked, issuesSection, posture, progress, reenroll } from "./support/payloads.js";

const shown = usePage();

test("the document holds no script, style or handler of its own", async () => {
    const response = await shown.page.request.get(`${shown.server.origin}/wren/v1/index.html`);
    const html = await response.text();
    assert.ok(!/<style|\sstyle=|\son[a-z]+=|javascript:/i.test(html));
    assert.deepEqual(html.match(/<script[^>]*>[^<]*<\/script>/g), ['<script type="module" src="page/page.js"></script>']);
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
        "page/page.js",
        "icon.svg",
    ]);
});

test("the document carries a policy of its own, for hosts that send none", async () => {
    assert.equal(
        await shown.page.locator('meta[http-equiv="Content-Security-Policy"]').getAttribute("content"),
        "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; base-uri 'none'; form-action 'none'",
    );
});

test("nothing is kept in the browser", async () => {
    await shown.show(alerts(reenroll));
    const kept = await shown.page.evaluate(async () => [localStorage.length, sessionStorage.length, document.cookie, history.length]);
    assert.deepEqual(kept.slice(0, 3), [0, 0, ""]);
    await shown.press("Continue");
    assert.equal(await shown.page.evaluate(() => history.length), kept[3]);
});
