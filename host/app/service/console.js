/**
 * The service's console: what the user of the host may do to the module and to the service behind it.
 *
 * @typedef {import("../core/connection.js").Connection} Connection
 */
import { element, field, button } from "../core/dom.js";
import { codeArea, makeForm, numberInput, select } from "./form.js";
import { makeKnobs } from "./knobs.js";
import { readSchema } from "./schema.js";

const steps = ["create", "register", "start", "stop", "unregister", "dispose"];

/**
 * @param {HTMLElement} panel
 * @param {(what: string, fields?: object) => Promise<void>} request
 * @param {import("../core/protocol.js").Ask} ask
 */
export function useConsole(panel, request, ask) {
    let state = null;
    let knobs = null;

    const running = element("p", { class: "running" });
    const stage = element("div", { class: "stage" });
    panel.append(lifecycle(ask), stage);

    // A knob that was refused goes back to what the service says.
    const turn = async (change) => {
        if (!(await ask("service", { json: JSON.stringify(change) }))) {
            showState();
        }
    };

    function showState() {
        if (state !== null) {
            running.textContent = runningText(state);
            knobs?.forEach(({ key, shown }) => shown.show(state.scenario?.[key]));
        }
    }

    function makeSections({ schema, stand_in: isStandIn, operations, documents }) {
        const raw = rawEditor(request, () => state);
        if (!isStandIn) {
            return [
                element("p", { class: "note" }, "The service behind this module is a real one; only the host can be told what to do."),
                hostForms(request),
            ];
        }
        const scenario = schema === null ? null : readSchema(schema);
        knobs = [...(scenario?.members ?? [])]
            .filter(([, { kind }]) => kind === "group")
            .map(([key, knob]) => ({
                key,
                knob,
                shown: makeKnobs(knob, (change) => turn({ [key]: change })),
            }));
        const lists = [...(scenario?.members ?? [])].filter(([, { kind }]) => kind === "list");
        for (const [key, knob] of lists) {
            knobs.push({ key, knob, shown: wrapped(makeKnobs({ members: new Map([[key, knob]]) }, turn), key) });
        }
        return [
            running,
            ...knobs.map(({ key, knob, shown }, index) => section(key, knob, shown.node, index === 0)),
            element("h2", { class: "section-title" }, "Trouble"),
            element("div", { class: "forms" }, failForm(request, operations), paceForm(request), slowForm(request)),
            element("h2", { class: "section-title" }, "By hand"),
            raw,
            deliverForm(request, documents),
            eventForm(request),
        ];
    }

    return {
        /** @param {import("../core/protocol.js").Hello} hello */
        startAnew(hello) {
            state = null;
            knobs = null;
            stage.replaceChildren(...makeSections(hello));
        },
        /** @param {object} next the stand-in's state */
        show(next) {
            state = next;
            showState();
        },
    };
}

// A list of the scenario itself stands among sections whose value is an object.
function wrapped(shown, key) {
    return { node: shown.node, show: (value) => shown.show({ [key]: value }) };
}

function section(key, { description }, node, isOpen) {
    const title = key.charAt(0).toUpperCase() + key.slice(1);
    const made = element("details", { class: "section" }, element("summary", { title: description }, title), node);
    made.open = isOpen;
    return made;
}

function lifecycle(ask) {
    const buttons = steps.map((step) => button({ class: "action" }, () => ask("lifecycle", { step }), step.charAt(0).toUpperCase() + step.slice(1)));
    return element("div", { class: "lifecycle", role: "group", "aria-label": "Life of the module" }, ...buttons);
}

function runningText({ enrollment, unenrollment, connections, pace }) {
    const parts = [
        enrollment ? `${enrollment.is_renewal ? "Renewal" : "Enrollment"} ${enrollment.enrollment_id}: ${enrollment.stage}` : "",
        unenrollment ? `Unenrollment ${unenrollment.enrollment_id}: ${unenrollment.stage}` : "",
        connections === undefined ? "" : `${connections} ${connections === 1 ? "connection" : "connections"}`,
        pace === undefined ? "" : `pace ${pace} %`,
    ];
    return parts.filter(Boolean).join(" · ");
}

function rawEditor(request, present) {
    const json = codeArea(8, '{"certificate": "revoked"}');
    const takeState = async () => {
        json.value = JSON.stringify(present()?.scenario ?? {}, null, 2);
    };
    return makeForm({
        title: "Scenario as JSON",
        fields: [field("Any part of a scenario", json)],
        actions: {
            Set: () => request("service", { json: json.value }),
            "Load anew": () => request("scenario", { json: json.value }),
            "Show the present state": takeState,
        },
    });
}

function failForm(request, operations) {
    const operation = select(operations);
    const result = numberInput(1, 0, 4294967295);
    const times = numberInput(1, 0, 4294967295);
    return makeForm({
        title: "Let calls fail",
        fields: [field("Operation", operation), pair(field("Result", result), field("Times", times))],
        actions: {
            Fail: () => request("fail", { operation: operation.value, result: Number(result.value), times: Number(times.value) }),
            "Heal all": () => request("heal"),
        },
    });
}

function paceForm(request) {
    const percent = numberInput(100, 0, 10000);
    return makeForm({
        title: "Pace of the service",
        fields: [field("Percent of its delays", percent)],
        actions: { "Set the pace": () => request("pace", { percent: Number(percent.value) }) },
    });
}

function slowForm(request) {
    const milliseconds = numberInput(0, 0, 5000);
    return makeForm({
        title: "Slow host",
        fields: [field("Milliseconds for each notice", milliseconds)],
        actions: { "Slow down": () => request("slow", { milliseconds: Number(milliseconds.value) }) },
    });
}

function hostForms(request) {
    return element("div", { class: "forms" }, slowForm(request), eventForm(request));
}

function deliverForm(request, documents) {
    const name = select(documents);
    const count = numberInput(1, 1, 10000);
    const json = codeArea(6, '{"version": "1", "state": "error", "substate": "no_service"}');
    return makeForm({
        title: "Deliver a document",
        fields: [pair(field("Document", name), field("How many times", count)), field("JSON, whatever it holds", json)],
        actions: { Deliver: () => request("deliver", { document: name.value, json: json.value, count: Number(count.value) }) },
    });
}

function eventForm(request) {
    const xml = codeArea(3, '<vtguiEvent type="system" id="quill_tile_details_action_btn_OnPress"/>');
    return makeForm({
        title: "Send an event",
        fields: [field("XML, whatever it holds", xml)],
        actions: { Send: () => request("event", { xml: xml.value }) },
    });
}

function pair(...fields) {
    return element("div", { class: "pair" }, ...fields);
}
