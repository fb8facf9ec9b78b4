import assert from "node:assert/strict";
import { test } from "node:test";

import { encode, usePage } from "./support/browser.js";
import { alert, alerts, alertsWithSection, issuesSection, local, progress, remote } from "./support/payloads.js";

const shown = usePage({}, { keep: true });

const noStrings = { sectionTitle: "", sectionText: "", sectionLabel: "", listTitle: "", listText: "" };

const read = (payload) => shown.call("payload", "readDetail", encode(payload));

async function assertRefused(payload, reason) {
    assert.deepEqual(await read(payload), { error: reason, kind: "PayloadError" });
}

test("an empty list of alerts is a flow without alerts", async () => {
    assert.deepEqual(await read(alerts()), { value: { flow: "alert", alerts: [], strings: noStrings } });
});

test("an alert without actions has none", async () => {
    const { value } = await read(alerts(alert("Title", "Short", "Long")));
    assert.deepEqual(value.alerts, [{ title: "Title", shortText: "Short", longText: "Long", actions: [] }]);
});

test("a local action keeps its label, its page and its event", async () => {
    const action = local("Continue", "Page", "Text", "re-enroll", "enrollment-7");
    const { value } = await read(alerts(alert("Title", "Short", "Long", action)));
    assert.deepEqual(value.alerts[0].actions, [
        { kind: "local", label: "Continue", title: "Page", description: "Text", event: { type: "re-enroll", value: "enrollment-7" } },
    ]);
});

test("a remote action keeps its label and its address", async () => {
    const { value } = await read(alerts(alert("Title", "Short", "Long", remote("Read", "https://help.example/"))));
    assert.deepEqual(value.alerts[0].actions, [{ kind: "remote", label: "Read", address: "https://help.example/" }]);
});

test("the strings for several alerts are kept", async () => {
    const { value } = await read(alertsWithSection(issuesSection, alert("A", "", ""), alert("B", "", "")));
    assert.deepEqual(value.strings, {
        sectionTitle: "Issues affecting secure resource access",
        sectionText: issuesSection.alertSectionDescription,
        sectionLabel: "See Details",
        listTitle: "Issues affecting secure resource access",
        listText: "Resolve the following issues or contact your IT help desk.",
    });
});

test("an enrollment's progress keeps its title and percentage", async () => {
    assert.deepEqual(await read(progress("Enrolling...", 40)), {
        value: { flow: "enrollment", title: "Enrolling...", percent: 40 },
    });
});

test("more than a hundred percent is a hundred", async () => {
    assert.equal((await read(progress("Enrolling...", 4294967295))).value.percent, 100);
});

test("letters beyond ASCII survive", async () => {
    const { value } = await read(alerts(alert("Zugriff gesperrt – größer 你好 🐦", "", "")));
    assert.equal(value.alerts[0].title, "Zugriff gesperrt – größer 你好 🐦");
});

test("a payload of many megabytes is read", async () => {
    const { value } = await read(alerts(...Array.from({ length: 100 }, () => alert("Title", "", "größer 你好 ".repeat(6000)))));
    assert.deepEqual(value.alerts.map(({ longText }) => longText.length), Array(100).fill(60000));
});

test("letters of several bytes survive wherever the payload is cut for decoding", async () => {
    const texts = [0, 1, 2, 3].map((shift) => "a".repeat(shift) + "🐦你".repeat(20000));
    for (const text of texts) {
        assert.equal((await read(progress(text, 1))).value.title, text);
    }
});

test("keys that are not known are passed over", async () => {
    const payload = { ...progress("Enrolling...", 1), later: 1 };
    payload.value.estimate = "soon";
    assert.equal((await read(payload)).value.percent, 1);
});

for (const [what, detail, reason] of [
    ["a number", 7, "the detail is not a text"],
    ["nothing", null, "the detail is not a text"],
    ["an object", { flow: "alert" }, "the detail is not a text"],
    ["letters outside the alphabet", "eyJm$CI6", "the detail is not Base64"],
    ["the alphabet of addresses", "_-8=", "the detail is not Base64"],
    ["missing padding", "e30", "the detail is not Base64"],
    ["padding in the middle", "e30=e30=", "the detail is not Base64"],
    ["white space", "e30=\n", "the detail is not Base64"],
    ["padding far from the end", `${"A".repeat(0x10000 - 1)}=${"A".repeat(8)}`, "the detail is not Base64"],
    ["padding alone", "====", "the detail is not Base64"],
    ["wrong far from the start", `${"A".repeat(0x10000)}$AAA`, "the detail is not Base64"],
    ["nothing at all", "", "the text is not JSON"],
    ["bytes that are not UTF-8", Buffer.from([0x7b, 0xff, 0x7d]).toString("base64"), "the text is not UTF-8"],
    ["half a letter at the end of many", Buffer.from(`"${"ä".repeat(40000)}`, "utf8").subarray(0, -1).toString("base64"), "the text is not UTF-8"],
    ["half a letter", Buffer.from([0x22, 0xc3]).toString("base64"), "the text is not UTF-8"],
    ["text that is not JSON", Buffer.from("{flow:1}").toString("base64"), "the text is not JSON"],
    ["half a document", Buffer.from('{"flow":"alert"').toString("base64"), "the text is not JSON"],
]) {
    test(`a detail that is ${what} is refused`, async () => {
        assert.deepEqual(await shown.call("payload", "readDetail", detail), { error: reason, kind: "PayloadError" });
    });
}

for (const [what, payload, reason] of [
    ["no object", "alert", "payload is not an object"],
    ["null", null, "payload is not an object"],
    ["an array", [], "payload is not an object"],
    ["without a flow", { value: {} }, "flow is not a text"],
    ["of an unknown flow", { flow: "unenrollment", value: {} }, "the flow is not known"],
    ["of a flow named like what every object inherits", { flow: "constructor", value: {} }, "the flow is not known"],
    ["without a value", { flow: "alert" }, "value is not an object"],
    ["with an array as value", { flow: "enrollment", value: [] }, "value is not an object"],
    ["without alerts", { flow: "alert", value: {} }, "alerts is not an array"],
    ["with alerts that are no list", { flow: "alert", value: { alerts: {} } }, "alerts is not an array"],
    ["with an alert that is a text", alerts("Access blocked"), "alert is not an object"],
    ["with an alert without a title", alerts({ shortDescription: "", longDescription: "" }), "title is not a text"],
    ["with a title that is a number", alerts(alert(7, "", "")), "title is not a text"],
    ["with a short description of null", alerts(alert("A", null, "")), "shortDescription is not a text"],
    ["without a long description", alerts({ title: "A", shortDescription: "" }), "longDescription is not a text"],
    ["with actions that are no list", alerts({ ...alert("A", "", ""), actions: {} }), "actions is not an array"],
    ["with actions of null", alerts({ ...alert("A", "", ""), actions: null }), "actions is not an array"],
    ["with an action that is null", alerts({ ...alert("A", "", ""), actions: [null] }), "action is not an object"],
    ["with an action of an unknown type", alerts(alert("A", "", "", { type: "call", label: "" })), "the action's type is not known"],
    ["with an action without a label", alerts(alert("A", "", "", { type: "remote", url: "" })), "label is not a text"],
    ["with a remote action without an address", alerts(alert("A", "", "", { type: "remote", label: "" })), "url is not a text"],
    ["with a local action without a page", alerts(alert("A", "", "", { ...local("", "", "", "", ""), detailPage: 1 })), "detailPage is not an object"],
    ["with a local action without an event", alerts(alert("A", "", "", { ...local("", "", "", "", ""), kestrelSuiteEvent: null })), "kestrelSuiteEvent is not an object"],
    ["with an event whose value is a number", alerts(alert("A", "", "", local("", "", "", "re-enroll", 7))), "value is not a text"],
    ["with page strings that are a list", alertsWithSection([], alert("A", "", "")), "multiAlertPageStrings is not an object"],
    ["with a page string missing", alertsWithSection({ ...issuesSection, alertListTitle: undefined }, alert("A", "", "")), "alertListTitle is not a text"],
    ["with an unknown state of an enrollment", { flow: "enrollment", value: { state: "done", title: "", percent_complete: 1 } }, "the enrollment's state is not known"],
    ["with a percentage that is a text", progress("Enrolling...", "40"), "percent_complete is not a whole number"],
    ["with half a percent", progress("Enrolling...", 0.5), "percent_complete is not a whole number"],
    ["with less than nothing", progress("Enrolling...", -1), "percent_complete is not a whole number"],
    ["with a title that is no text", progress(null, 1), "title is not a text"],
]) {
    test(`a payload ${what} is refused`, () => assertRefused(payload, reason));
}

test("what an object inherits is not taken for a key of it", async () => {
    await assertRefused({ flow: "alert", value: { alerts: [JSON.parse('{"__proto__":{"title":"A"}}')] } }, "title is not a text");
});
