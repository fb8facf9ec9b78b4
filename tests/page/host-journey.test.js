import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { test } from "node:test";

import { useRealHost } from "./support/real-host.js";

const host = useRealHost();

const unenrolled = "Registration is required to access secure resources.";
const active = "Wren Gate is active.";

test("from the first click to an active device, and back", async () => {
    const user = await host.start({ delays: { registration: 3000 } });
    await user.status(unenrolled);
    assert.equal(await user.page.locator("#tray .tray").textContent(), "Tray icon, Attention: Registration required");

    await user.press("Enroll");
    await user.status("Enrolling...");
    await user.logIn();
    await user.local.getByRole("heading", { name: "Enrolling..." }).waitFor();
    await user.page.locator(".toast", { hasText: "Congratulations! You have successfully enrolled" }).waitFor();
    await user.noBrowser();

    await user.press("Open them");
    await user.status(active);
    assert.deepEqual((await user.tile.getByRole("button").allInnerTexts()).filter(Boolean), []);
    assert.equal(await user.button("Unenroll").isEnabled(), true);
    assert.equal(await user.button("Sync now").isEnabled(), true);

    await user.press("Unenroll");
    await user.status(unenrolled);
    assert.equal(await user.button("Unenroll").isEnabled(), false);
    assert.deepEqual((await user.traced("InitiateUnenrollment")).filter((row) => row.startsWith("api")).length, 1);
});

test("a wrong password asks again, and the right one then will do", async () => {
    const user = await host.start();
    await user.press("Enroll");
    await user.logIn("not this one");
    await user.login.getByText("That password is wrong.").waitFor();
    await user.logIn();
    await user.noBrowser();
    await user.press("Open them");
    await user.status(active);
});

test("an enrollment is cancelled by the tile's button", async () => {
    const user = await host.start();
    await user.press("Enroll");
    await user.login.getByLabel("User name").waitFor();
    await user.press("Cancel");
    await user.noBrowser();
    await user.status(unenrolled);
});

test("an enrollment is cancelled by closing its login", async () => {
    const user = await host.start();
    await user.press("Enroll");
    await user.login.getByLabel("User name").waitFor();
    await user.press("Close", user.page.locator(".browser"));
    await user.noBrowser();
    await user.status(unenrolled);
});

test("an enrollment that fails is told by the error dialog, which Escape closes", async () => {
    const user = await host.start({ faults: [{ when: "enrollment_cookie", fail: "server_communication_error" }] });
    await user.press("Enroll");
    await user.logIn();
    const dialog = user.page.getByRole("dialog", { name: "Norvane Kestrel Suite", exact: true });
    await dialog.waitFor();
    assert.equal(await user.page.evaluate(() => document.activeElement.textContent), "Close");
    await user.page.keyboard.press("Escape");
    await dialog.waitFor({ state: "detached" });
    await user.status(unenrolled);
    assert.equal((await user.traced("wren_client_error_gen_close_btn_OnClose")).some((row) => row.startsWith("event")), true);
});

test("the error dialog's button closes it, too", async () => {
    const user = await host.start({ faults: [{ when: "enrollment_started", fail: "internal_error" }] });
    await user.press("Enroll");
    const dialog = user.page.getByRole("dialog", { name: "Norvane Kestrel Suite", exact: true });
    await dialog.locator(".dialog-buttons button").click();
    await dialog.waitFor({ state: "detached" });
});

test("a revoked certificate is an alert whose page leads to a new login", async () => {
    const user = await host.start({ device: { enrolled: true } });
    await user.status(active);
    await user.set({ certificate: "revoked" });
    await user.status("Verify your identity.");
    await user.press("Details", user.tile);
    await user.local.getByRole("heading", { name: "Verify your identity" }).waitFor();
    await user.local.getByRole("button", { name: "Continue" }).click();
    await user.local.getByRole("button", { name: "Continue" }).click();
    await user.logIn();
    await user.noBrowser();
    await user.press("Open them");
    await user.status(active);
    assert.equal((await user.traced("InitiateReEnrollment")).some((row) => row.startsWith("api")), true);
});

test("an alert's page keeps up with the alerts, and goes with the last one", async () => {
    const user = await host.start({ device: { enrolled: true } });
    await user.set({ posture: "unreachable" });
    await user.press("Details", user.tile);
    await user.local.getByRole("heading", { name: "Plover Desktop error" }).waitFor();
    await user.set({ interceptor: "disconnected" });
    await user.local.getByRole("button", { name: "All alerts (2)" }).click();
    await user.local.getByRole("heading", { name: "Issues affecting secure resource access" }).waitFor();
    await user.set({ posture: "ok", interceptor: "ok" });
    await user.noBrowser();
    await user.status(active);
});

test("a request of the dataplane is verified with a login", async () => {
    const user = await host.start({ device: { enrolled: true } });
    await user.status(active);
    await user.set({ dataplane_auth_requests: [{ context_id: "context-1" }] });
    await user.page.locator(".toast", { hasText: "Verify your identity" }).waitFor();
    await user.press("Verify", user.tile);
    await user.logIn();
    await user.noBrowser();
    await user.status(active);
});

test("a login that doesn't load is reported and over", async () => {
    const user = await host.start();
    await user.press("Enroll");
    await user.login.getByLabel("User name").waitFor();
    await user.press("It doesn't load");
    const dialog = user.page.getByRole("dialog", { name: "Norvane Kestrel Suite", exact: true });
    await user.press("Close", dialog.locator(".dialog-buttons"));
    await dialog.waitFor({ state: "detached" });
    assert.equal((await user.traced("quill_enrollment_browser_web_control_OnError")).some((row) => row.startsWith("event")), true);
});

test("the statistics count on, and stay open where they were opened", async () => {
    const user = await host.start({ device: { enrolled: true, flows: { active_flow_cnt_udp: 5 } } });
    await user.status(active);
    await user.tab("Statistics");
    const details = user.page.getByRole("treegrid", { name: "Statistics: Details" });
    await details.getByRole("row", { name: "Active Flow Counts:" }).click();
    await details.getByRole("row", { name: "Active UDP Flows: 5" }).waitFor();
    await user.set({ flows: { active_flow_cnt_udp: 6 } });
    await details.getByRole("row", { name: "Active UDP Flows: 6" }).waitFor();
});

test("a knob of the console changes the tile", async () => {
    const user = await host.start({ device: { enrolled: true } });
    await user.status(active);
    await user.tab("Service");
    await user.page.locator("#service").getByLabel("Service error", { exact: true }).selectOption("not_single_user");
    await user.status("Multiple users logged into this device.");
    assert.equal(await user.tile.locator(".badge").getAttribute("data-tone"), "error");
});

test("a scenario that is wrong is told where and why", async () => {
    const user = await host.start();
    await user.tab("Service");
    const form = user.page.getByRole("form", { name: "Scenario as JSON" });
    await form.getByRole("textbox").fill('{"device": {"certificate": "expird"}}');
    await user.press("Set", form);
    await form.getByText("/device/certificate: 'expird' is none of").waitFor();
});

test("calls that fail leave their trace, and the plugin is stopped and started again", async () => {
    const user = await host.start();
    await user.status(unenrolled);
    await user.tab("Service");
    const life = user.page.getByRole("group", { name: "Life of the module" });
    await user.press("Stop", life);
    await user.tab("Machine");
    await user.page.getByText("Registered_s").first().waitFor();
    await user.tab("Service");
    await user.press("Start", life);
    await user.status(unenrolled);
    await user.press("Start", life);
    await user.page.getByRole("alert").waitFor();
});

test("a burst of documents is taken, and the page keeps up", async () => {
    const user = await host.start();
    await user.tab("Service");
    const form = user.page.getByRole("form", { name: "Deliver a document" });
    await form.getByLabel("How many times").fill("500");
    await user.press("Deliver", form);
    await form.getByText("Done.").waitFor();
    await user.status("Wren Gate service requires user approval.");
    await user.tab("Trace");
    await user.page.waitForFunction(() => Number(document.querySelector(".chip[data-kind=document] .chip-count").textContent) >= 500);
});

test("two viewers see the same, and both may act", async () => {
    const one = await host.start();
    const other = await host.view();
    await one.status(unenrolled);
    await other.press("Enroll");
    await one.login.getByLabel("User name").waitFor();
    await one.logIn();
    await one.noBrowser();
    await other.noBrowser();
    for (const user of [one, other]) {
        await user.press("Open them");
        await user.status(active);
    }
});

test("who comes late is shown what has happened", async () => {
    const one = await host.start();
    await one.press("Enroll");
    await one.login.getByLabel("User name").waitFor();
    const late = await host.view();
    await late.login.getByLabel("User name").waitFor();
    assert.equal((await late.traced("quill_tile_enroll_action_btn_OnPress")).some((row) => row.startsWith("event")), true);
});

test("the recording is a session without its cookies, and replays as it was", async () => {
    const user = await host.start();
    await user.press("Enroll");
    await user.logIn();
    await user.noBrowser();
    const waiting = user.page.waitForEvent("download");
    await user.page.getByRole("link", { name: "Save recording" }).click();
    const text = await readFile(await (await waiting).path(), "utf8");
    const lines = text.split("\n").filter((line) => line !== "" && !line.startsWith("#")).map((line) => JSON.parse(line));
    assert.deepEqual(lines.filter((line) => (line.do === undefined) === (line.out === undefined)), []);
    assert.deepEqual(lines.map((line) => line.do).filter(Boolean).slice(0, 3), ["create", "register", "start"]);
    const reply = lines.find(({ out, operation }) => out === "api" && operation === "EnrollmentAuthReply");
    assert.match(JSON.parse(reply.json).enrollment_cookie, /^redacted-\d+$/);

    const { code, said } = await host.replay(text);
    assert.match(said, /: \d+ outputs as expected\n$/);
    assert.equal(code, 0);
});

test("a program that is interrupted says goodbye", async () => {
    const user = await host.start();
    await user.status(unenrolled);
    assert.equal(await host.interrupt(), 0);
    host.process = null;
    await user.page.locator("#connection[data-phase=ended]").waitFor();
    assert.match(await user.page.locator("#connection-text").innerText(), /^The host has ended\. ./);
});
