import assert from "node:assert/strict";
import { request } from "node:http";
import { after, before, test } from "node:test";

import { serve } from "./support/server.js";
import { useRealHost } from "./support/real-host.js";

const host = useRealHost();

let elsewhere;
before(async () => {
    elsewhere = await serve({ "/page.html": "<!doctype html><title>Elsewhere</title>" });
});
after(() => elsewhere.close());

/** One request as no browser would send it. */
function status(path, { method = "GET", headers = {} } = {}) {
    const { port } = new URL(host.address);
    return new Promise((resolve, reject) => {
        const asked = request({ host: "127.0.0.1", port, path, method, headers }, (response) => {
            response.resume();
            resolve(response.statusCode);
        });
        asked.on("upgrade", (response, socket) => {
            socket.destroy();
            resolve(response.statusCode);
        });
        asked.on("error", reject);
        asked.end();
    });
}

const upgrade = {
    Connection: "Upgrade",
    Upgrade: "websocket",
    "Sec-WebSocket-Version": "13",
    "Sec-WebSocket-Key": "dGhlIHNhbXBsZSBub25jZQ==",
};

test("whoever lacks the token gets nothing", async () => {
    await host.start();
    assert.equal(await status("/"), 403);
    assert.equal(await status("/app/main.js"), 403);
    assert.equal(await status("/0123456789abcdef0123456789abcdef/"), 403);
    assert.equal(await status("/live", { headers: upgrade }), 403);
});

test("another name of the machine, or another origin, gets nothing", async () => {
    await host.start();
    const { pathname, host: name, origin } = new URL(host.address);
    assert.equal(await status(pathname), 200);
    assert.equal(await status(pathname, { headers: { Host: "host.example" } }), 403);
    assert.equal(await status(pathname, { headers: { Host: name, Origin: "http://host.example" } }), 403);
    assert.equal(await status(pathname, { headers: { Host: name, Origin: "null" } }), 403);
    assert.equal(await status(`${pathname}live`, { headers: { ...upgrade, Origin: "http://host.example" } }), 403);
    assert.equal(await status(`${pathname}live`, { headers: upgrade }), 403);
    assert.equal(await status(`${pathname}live`, { headers: { ...upgrade, Origin: origin } }), 101);
});

test("what doesn't exist and what isn't meant is refused", async () => {
    await host.start();
    const { pathname } = new URL(host.address);
    assert.equal(await status(`${pathname}nothing`), 404);
    assert.equal(await status(`${pathname}app/../../main.cpp`), 404);
    assert.equal(await status(pathname, { method: "POST" }), 405);
});

test("a page of a second origin can neither listen, nor read, nor frame", async () => {
    await host.start();
    const context = await host.browser.newContext();
    const page = await context.newPage();
    await page.goto(`${elsewhere.origin}/page.html`);
    // Without the first page's policy, what is refused is refused by the program.
    await page.goto("about:blank");
    await page.route("http://second.example/", (route) =>
        route.fulfill({ contentType: "text/html", body: "<!doctype html><title>Second</title><iframe></iframe>" }),
    );
    await page.goto("http://second.example/");
    const { address } = host;
    const listened = await page.evaluate(
        (target) =>
            new Promise((resolve) => {
                const socket = new WebSocket(target);
                socket.onopen = () => resolve("open");
                socket.onerror = () => resolve("refused");
            }),
        `${address.replace("http:", "ws:")}live`,
    );
    assert.equal(listened, "refused");
    assert.equal(await page.evaluate((target) => fetch(target).then(() => "read", () => "refused"), address), "refused");
    assert.equal(await page.evaluate((target) => fetch(`${target}session.jsonl`).then(() => "read", () => "refused"), address), "refused");
    await page.evaluate(
        (target) =>
            new Promise((resolve) => {
                const frame = document.querySelector("iframe");
                frame.onload = resolve;
                frame.src = target;
            }),
        address,
    );
    assert.equal(page.frames().some((frame) => frame.url() === address), false);
    await context.close();
});

test("everything is sent with strict headers", async () => {
    const viewer = await host.start();
    for (const path of ["", "app/main.js", "pages/wren/v1/index.html", "session.jsonl"]) {
        const headers = (await viewer.context.request.get(host.address + path)).headers();
        assert.equal(headers["x-content-type-options"], "nosniff", path);
        assert.equal(headers["cache-control"], "no-store", path);
        assert.match(headers["content-security-policy"], /default-src 'none'/, path);
        assert.match(headers["referrer-policy"], /^(no-referrer|same-origin)$/, path);
    }
    const page = (await viewer.context.request.get(host.address)).headers()["content-security-policy"];
    assert.match(page, /frame-ancestors 'none'/);
    assert.match(page, /script-src 'self'(;|$)/);
});
