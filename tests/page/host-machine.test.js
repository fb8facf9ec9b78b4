import assert from "node:assert/strict";
import { test } from "node:test";

import { beginning, moved, processed, Recorder } from "./support/host-entries.js";
import { enrolling, idle, machine } from "./support/host-machine.js";
import { hello, useHostPage } from "./support/host-page.js";

const shown = useHostPage();

const start = async (told = {}) => {
    await shown.load(told);
    await shown.tab("Machine");
};
const region = (name) => shown.page.getByRole("region", { name, exact: true });
const current = () => shown.page.locator(".state.current").evaluateAll((all) => all.map(({ dataset }) => dataset.state));

test("root and regions are drawn, each with its present state", async () => {
    await start({ machine: enrolling });
    assert.deepEqual(await shown.page.locator("#machine h3").allInnerTexts(), ["Root", "Main", "Enroll", "Dataplane auth", "Unenroll", "Alert"]);
    assert.deepEqual(await current(), [
        "Started_s",
        "MainEnrolling_s",
        "EnrollAuthenticating_s",
        "DataplaneAuthIdle_s",
        "UnenrollIdle_s",
        "AlertIdle_s",
    ]);
    assert.equal(await region("Enroll").getByRole("img").getAttribute("aria-label"), "Enroll: in EnrollAuthenticating_s");
});

test("a change of states moves the marks", async () => {
    await start();
    assert.equal(await region("Enroll").locator(".region-now").innerText(), "EnrollIdle_s");
    await shown.say(enrolling);
    assert.equal(await region("Enroll").locator(".region-now").innerText(), "EnrollAuthenticating_s");
});

test("regions that don't run are said not to", async () => {
    await start({ machine: { ...idle, root: "Registered_s", regions: {} } });
    assert.deepEqual(await current(), ["Registered_s"]);
    assert.equal(await region("Main").locator(".region-now").innerText(), "not running");
    assert.equal(await region("Main").getAttribute("data-asleep"), "true");
});

test("the last step is told and its line is marked", async () => {
    const recorder = new Recorder();
    await start({ hello: hello({ entries: beginning(recorder) }), machine: idle });
    await shown.say(
        { type: "entries", entries: [recorder.output(processed("InitiateEnrollment_e")), recorder.output(moved("Started_s", "MainActive_s", "MainEnrolling_s"))] },
        enrolling,
    );
    assert.equal(await shown.page.locator(".last-step").innerText(), "Last step: MainActive_s to MainEnrolling_s, on InitiateEnrollment_e");
    assert.deepEqual(await shown.page.locator(".edge.last").evaluateAll((all) => all.map(({ dataset }) => `${dataset.from} ${dataset.to}`)), [
        "MainActive_s MainEnrolling_s",
    ]);
});

for (const [event, name] of [
    ["boost::ext::sml::v1_1_11::back::anonymous", "completion"],
    ["boost::ext::sml::v1_1_11::back::exception<class ApiError_ex,class ApiError_ex>", "exception<ApiError_ex>"],
    ["StatusNotification_e", "StatusNotification_e"],
]) {
    test(`the event ${event} is called ${name}`, async () => {
        const recorder = new Recorder();
        await start({ hello: hello({ entries: [recorder.output(processed(event)), recorder.output(moved("M", "Starting_s", "Started_s"))] }) });
        assert.equal(await shown.page.locator(".last-step").innerText(), `Last step: Starting_s to Started_s, on ${name}`);
    });
}

test("what may happen next is a table", async () => {
    await start();
    await region("Main").getByText("What it takes from here").click();
    const rows = await region("Main").getByRole("table").locator("tbody tr").allInnerTexts();
    assert.deepEqual(rows, [
        "StatusNotification_e\t\tCacheStatusNotificationAndUpdateUI_a\tstays",
        "InitiateEnrollment_e\t\t\tMainEnrolling_s",
        "InitiateReEnrollment_e\t\t\tMainEnrolling_s",
        "InitiateUnenrollment_e\t\t\tMainUnenrolling_s",
        "PerformConfigSync_e\t\tApiPerformConfigSync_a\tstays",
    ]);
});

test("each way between two states is one line that tells all its events", async () => {
    await start();
    const line = region("Main").locator(".edge[data-from=MainActive_s][data-to=MainEnrolling_s]");
    assert.equal(await line.count(), 1);
    assert.equal(
        await line.locator("title").textContent(),
        "MainActive_s to MainEnrolling_s: InitiateEnrollment_e\nMainActive_s to MainEnrolling_s: InitiateReEnrollment_e",
    );
});

test("without a model there is the list of the present states", async () => {
    await start({ hello: hello({ machine: null }) });
    assert.equal(await shown.page.locator("#machine svg").count(), 0);
    assert.deepEqual(await shown.page.locator("#machine dd").allInnerTexts(), [
        "Started_s",
        "MainActive_s",
        "EnrollIdle_s",
        "DataplaneAuthIdle_s",
        "UnenrollIdle_s",
        "AlertIdle_s",
    ]);
});

test("without a plugin object nothing is marked", async () => {
    await start({ machine: { type: "machine", root: "", regions: {} } });
    assert.deepEqual(await current(), []);
});

test("no two lines of a diagram lie on each other, and all lie inside it", async () => {
    await start();
    for (const { regions } of machine.machines) {
        for (const one of regions) {
            const { width, height, edges } = await shown.call("machine/layout", "layOut", one);
            const paths = edges.map(({ path }) => path);
            assert.equal(new Set(paths).size, paths.length, one.name);
            const verticals = edges.map(({ path }) => verticalOf(path));
            for (const [index, { x, top, bottom }] of verticals.entries()) {
                assert.equal(x > 0 && x < width && top >= 0 && bottom <= height, true, paths[index]);
                const shared = verticals.filter((other) => other.x === x && other.top < bottom && top < other.bottom);
                assert.equal(shared.length, 1, paths[index]);
            }
        }
    }
});

/** The long vertical stretch of a line. */
function verticalOf(path) {
    const numbers = path.match(/-?\d+(\.\d+)?/g).map(Number);
    const x = path.includes("H") ? numbers[3] : numbers[0];
    const ends = path.includes("H") ? [numbers[1], numbers.at(-2)] : [numbers[1], numbers[2]];
    return { x, top: Math.min(...ends), bottom: Math.max(...ends) };
}
