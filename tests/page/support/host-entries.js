/**
 * Entries of the trace, as the module and its service write them.
 */
const morning = new Date(2026, 10, 21, 9, 0, 0).getTime();

/** Numbers entries and sets them a little apart. */
export class Recorder {
    #seq = 0;
    #input = 0;

    input(fields) {
        this.#input = ++this.#seq;
        return { seq: this.#seq, time: this.#time(), thread: fields.do === "deliver" ? 2 : 1, ...fields };
    }

    output(fields) {
        return { seq: ++this.#seq, time: this.#time(), thread: 1, input: this.#input, ...fields };
    }

    #time() {
        return morning + 7 * this.#seq;
    }
}

export const log = (severity, name, message) => ({ out: "log", severity, function: name, file: "PresentationPluginImpl", line: 42, message });

export const processed = (event) =>
    log(0, "QuillSmlLogger_t::log_process_event", `[struct PresentationPlugin_s][process_event] struct ${event}`);

export const moved = (machine, from, to) =>
    log(0, "QuillSmlLogger_t::log_state_change", `[struct ${machine}][transition] class ${from} -> class ${to}`);

export const status = (more = {}) =>
    JSON.stringify({
        version: "1",
        state: "active",
        interceptor_connectivity: "ok",
        enrollments: [],
        enrollment_choices: [{ id: "choice-1", label: "Example Corp", enroll_allowed: true }],
        ...more,
    });

const tileNotice =
    '<vtguiNotice module="com.norvane.vantor.presentation.quill" type="update" timestamp="Sat Nov 21 09:00:00 2026" state="Attention">\n' +
    '\t<label id="simple_status" value="Registration is required to access secure resources." tooltip="" color="black" hidden="false" disabled="false"/>\n' +
    '\t<button id="quill_tile_enroll_action_btn" label="Enroll" tooltip="Enroll" hidden="false" disabled="false"/>\n' +
    '\t<traystate id="tray_state_string" value="Registration required"/>\n</vtguiNotice>\n';

/** The start of a session: eight calls and documents with what comes of them. */
export function beginning(recorder = new Recorder()) {
    const i = (fields) => recorder.input(fields);
    const o = (fields) => recorder.output(fields);
    return [
        i({ do: "create", name: "com.norvane.vantor.presentation", kind: "cpp" }),
        o(log(0, "CreatePlugin", "Creating Plugin")),
        o({ out: "api", operation: "GetQuillApiFactory", json: null }),
        o({ out: "created", object: true }),
        i({ do: "register", arguments: "", callbacks: "host", translator: true, handle: 7 }),
        o(processed("Register_e")),
        o(moved("PresentationPlugin_s", "Unregistered_s", "Registered_s")),
        o({ out: "result", value: 0 }),
        i({ do: "start" }),
        o(log(1, "PresentationPluginImpl::Start", "Starting WREN Presentation Plugin Version '5.1.11.2143'")),
        o(moved("PresentationPlugin_s", "Registered_s", "Starting_s")),
        o({ out: "result", value: 0 }),
        i({ do: "deliver", document: "StatusNotification", json: status() }),
        o(processed("StatusNotification_e")),
        o({ out: "notice", callbacks: "host", handle: 7, xml: tileNotice }),
        i({ do: "deliver", document: "StatusNotification", json: status({ interceptor_connectivity: "disconnected", substate: "x" }) }),
        o(log(2, "PresentationPluginImpl::updateMainUi", "Ignoring unexpected Status Notification")),
        i({ do: "event", xml: '<vtguiEvent type="system" id="quill_tile_enroll_action_btn_OnPress"/>' }),
        o(processed("InitiateEnrollment_e")),
        o(moved("Started_s", "MainActive_s", "MainEnrolling_s")),
        o(processed("InitiateEnrollment_e")),
        o(moved("Started_s", "EnrollIdle_s", "EnrollRequestPending_s")),
        o({
            out: "api",
            operation: "InitiateEnrollment",
            json: '{"version":"1","enrollment_choice_id":"choice-1","enrollment_context":""}',
        }),
        o(log(3, "PresentationPluginImpl::EventNotification", "Unexpected state transition")),
        o({ out: "result", value: -10 }),
        i({ do: "service", json: '{"device":{"certificate":"revoked"}}' }),
        o({ out: "violation", rule: "readable-notice", text: "a notice of type \"unknown\"" }),
    ];
}

/** Many entries, as a burst of documents makes them. */
export function burst(count, recorder = new Recorder()) {
    return Array.from({ length: count }, (_, index) =>
        index % 4 === 0
            ? recorder.input({ do: "deliver", document: "StatusNotification", json: status({ substate: `burst-${index}` }) })
            : recorder.output(log(index % 3 === 0 ? 1 : 0, "PresentationPluginImpl::StatusNotification", `line ${index}`)),
    );
}
