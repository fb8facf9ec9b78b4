import assert from "node:assert/strict";
import { test } from "node:test";

import { hello, serviceState, useHostPage } from "./support/host-page.js";

const shown = useHostPage();

const start = async (told = {}) => {
    await shown.load(told);
    await shown.tab("Service");
};
const panel = () => shown.page.locator("#service");
const form = (name) => shown.page.getByRole("form", { name });
const sent = async () => {
    const { json, ...request } = await shown.host.next();
    return json === undefined ? request : { ...request, json: JSON.parse(json) };
};
const label = (text) => panel().getByLabel(text, { exact: true });
const group = (title) => panel().locator(`details.knob-group:has(> summary:text-matches("^${title}\\\\d*$"))`);

test("the knobs show what the service says", async () => {
    await start({ service: serviceState({ certificate: "revoked", enrolled: true, config_sync_failures: 4 }) });
    assert.equal(await label("Certificate").inputValue(), "revoked");
    assert.equal(await label("Enrolled").isChecked(), true);
    assert.equal(await label("Config sync failures").inputValue(), "4");
    assert.equal(await label("Posture").inputValue(), "ok", "the default, where nothing is told");
});

test("a choice, a switch and a number send what they were turned to, alone", async () => {
    await start();
    await label("Certificate").selectOption("expired");
    assert.deepEqual(await sent(), { do: "service", json: { device: { certificate: "expired" } } });
    await label("Enrolled").check();
    assert.deepEqual(await sent(), { do: "service", json: { device: { enrolled: true } } });
    await label("Config sync failures").fill("7");
    await label("Config sync failures").press("Enter");
    assert.deepEqual(await sent(), { do: "service", json: { device: { config_sync_failures: 7 } } });
});

test("the words of a choice are those of the schema", async () => {
    await start();
    assert.deepEqual(await label("Certificate").locator("option").allInnerTexts(), [
        "ok",
        "expired",
        "revoked",
        "rejected",
        "internal_error",
        "unknown",
    ]);
});

test("a number beyond its limits is not sent and goes back", async () => {
    await start();
    await label("Config sync failures").fill("-3");
    await label("Config sync failures").press("Tab");
    assert.equal(await label("Config sync failures").inputValue(), "0");
    await shown.settle();
    assert.deepEqual(shown.host.requests, []);
});

test("a knob that the service refuses goes back, and the reason is told", async () => {
    await start();
    shown.host.refusals.service = "/device/certificate: no";
    await label("Certificate").selectOption("expired");
    await shown.page.getByRole("alert").waitFor();
    assert.equal(await shown.page.getByRole("alert").innerText(), "/device/certificate: no");
    assert.equal(await label("Certificate").inputValue(), "ok");
});

test("news of the service doesn't overwrite what is being typed", async () => {
    await start();
    await label("Config sync failures").fill("12");
    await shown.say({ type: "service", state: serviceState({ config_sync_failures: 3, certificate: "revoked" }) });
    assert.equal(await label("Config sync failures").inputValue(), "12");
    assert.equal(await label("Certificate").inputValue(), "revoked");
});

test("a group inside sends its own key", async () => {
    await start();
    await group("Identity").locator("summary").click();
    await label("User name").fill("Kim");
    await label("User name").press("Enter");
    assert.deepEqual(await sent(), { do: "service", json: { device: { identity: { user_name: "Kim" } } } });
});

test("a list is sent as a whole, with what was added, changed or taken out", async () => {
    const proxies = [{ label: "One", status: "active" }, { label: "Two", status: "active" }];
    await start({ service: serviceState({ proxies }) });
    const list = group("Proxies");
    await list.locator("summary").click();
    await list.getByLabel("Status").nth(1).fill("inactive_tnd");
    await list.getByLabel("Status").nth(1).press("Enter");
    assert.deepEqual(await sent(), { do: "service", json: { device: { proxies: [proxies[0], { label: "Two", status: "inactive_tnd" }] } } });
    await shown.button("Remove Proxies 1", list).click();
    assert.deepEqual(await sent(), { do: "service", json: { device: { proxies: [proxies[1]] } } });
    await shown.button("Add", list).click();
    assert.deepEqual(await sent(), {
        do: "service",
        json: { device: { proxies: [...proxies, { label: "Example proxy", status: "active" }] } },
    });
});

test("a new item of a list gets an id of its own", async () => {
    await start({ service: serviceState({ choices: [{ id: "choice-1" }] }) });
    const list = group("Choices");
    await list.locator("summary").click();
    await shown.button("Add", list).click();
    const { json } = await sent();
    assert.equal(json.device.choices[1].id, "item-2");
});

test("delays and logins are knobs too", async () => {
    await start();
    await panel().locator("summary", { hasText: /^Delays$/ }).click();
    await label("Registration").fill("20");
    await label("Registration").press("Enter");
    assert.deepEqual(await sent(), { do: "service", json: { delays: { registration: 20 } } });
});

test("faults are a list of the scenario itself", async () => {
    await start();
    await panel().locator("summary", { hasText: /^Faults$/ }).first().click();
    const list = group("Faults");
    await list.locator("summary").first().click();
    await list.getByRole("button", { name: "Add", exact: true }).last().click();
    const { json } = await sent();
    assert.equal(Array.isArray(json.faults), true);
    assert.equal(json.faults.length, 1);
});

test("what runs is told", async () => {
    await start({
        service: { ...serviceState(), enrollment: { enrollment_id: "enrollment-3", stage: "logging_in", is_renewal: false }, connections: 2, pace: 50 },
    });
    assert.equal(await panel().locator(".running").innerText(), "Enrollment enrollment-3: logging_in · 2 connections · pace 50 %");
});

test("a scenario that is refused says so in its place", async () => {
    await start();
    const raw = form("Scenario as JSON");
    await raw.getByRole("textbox").fill("{");
    shown.host.refusals.scenario = "line 1: the text ends too early";
    await shown.button("Load anew", raw).click();
    assert.deepEqual(await shown.host.next(), { do: "scenario", json: "{" });
    await raw.getByText("line 1: the text ends too early").waitFor();
    shown.host.refusals = {};
    await raw.getByRole("textbox").fill("{}");
    await shown.button("Set", raw).click();
    await raw.getByText("Done.").waitFor();
    assert.deepEqual(await shown.host.next(), { do: "service", json: "{}" });
});

test("the present state can be taken over into the editor", async () => {
    await start({ service: serviceState({ certificate: "revoked" }) });
    const raw = form("Scenario as JSON");
    await shown.button("Show the present state", raw).click();
    await raw.getByText("Done.").waitFor();
    assert.equal(JSON.parse(await raw.getByRole("textbox").inputValue()).device.certificate, "revoked");
});

test("calls can be made to fail, and healed", async () => {
    await start();
    const fail = form("Let calls fail");
    await fail.getByLabel("Operation").selectOption("InitiateEnrollment");
    await fail.getByLabel("Result").fill("6");
    await fail.getByLabel("Times").fill("2");
    await shown.button("Fail", fail).click();
    assert.deepEqual(await shown.host.next(), { do: "fail", operation: "InitiateEnrollment", result: 6, times: 2 });
    await shown.button("Heal all", fail).click();
    assert.deepEqual(await shown.host.next(), { do: "heal" });
});

test("pace and slowness are set", async () => {
    await start();
    await form("Pace of the service").getByLabel("Percent of its delays").fill("0");
    await shown.button("Set the pace").click();
    assert.deepEqual(await shown.host.next(), { do: "pace", percent: 0 });
    await form("Slow host").getByLabel("Milliseconds for each notice").fill("250");
    await shown.button("Slow down").click();
    assert.deepEqual(await shown.host.next(), { do: "slow", milliseconds: 250 });
});

test("documents are delivered as they stand, as often as asked for", async () => {
    await start();
    const deliver = form("Deliver a document");
    await deliver.getByLabel("Document").selectOption("DataplaneNotification");
    await deliver.getByLabel("How many times").fill("500");
    await deliver.getByLabel("JSON, whatever it holds").fill("[]");
    await shown.button("Deliver", deliver).click();
    assert.deepEqual(await shown.host.next(), { do: "deliver", document: "DataplaneNotification", json: "[]", count: 500 });
});

test("an event is sent as it stands", async () => {
    await start();
    await form("Send an event").getByRole("textbox").fill("<x/>");
    await shown.button("Send", form("Send an event")).click();
    assert.deepEqual(await shown.host.next(), { do: "event", xml: "<x/>" });
});

for (const step of ["create", "register", "start", "stop", "unregister", "dispose"]) {
    test(`there is a button to ${step}`, async () => {
        await start();
        await panel().getByRole("group", { name: "Life of the module" }).getByRole("button", { name: new RegExp(`^${step}$`, "i") }).click();
        assert.deepEqual(await shown.host.next(), { do: "lifecycle", step });
    });
}

test("a real service has no knobs, but the host still has", async () => {
    await start({ hello: hello({ stand_in: false, schema: null }) });
    assert.equal(await panel().locator(".section").count(), 0);
    assert.equal(await form("Slow host").isVisible(), true);
    assert.equal(await form("Send an event").isVisible(), true);
    assert.equal(await form("Let calls fail").count(), 0);
});

test("a stand-in without a schema still takes JSON", async () => {
    await start({ hello: hello({ schema: null }) });
    assert.equal(await panel().locator(".section").count(), 0);
    assert.equal(await form("Scenario as JSON").isVisible(), true);
});
