/**
 * The machine: each region as a diagram with its present state, the step that was taken last, and what could happen
 * next. Without a model of it, the list of the present states.
 *
 * @typedef {import("../core/protocol.js").MachineModel} MachineModel
 * @typedef {import("../core/protocol.js").Region} Region
 */
import { element, setText, svg } from "../core/dom.js";
import { boxHeight, boxWidth, layOut } from "./layout.js";
import { Trail } from "./trail.js";

/** @param {HTMLElement} panel */
export function useMachine(panel) {
    const waiting = element("p", { class: "empty" }, "Nothing is known of the machine yet.");
    const step = element("p", { class: "last-step" });
    const regions = element("div", { class: "regions" });
    panel.append(waiting, step, regions);

    let trail = new Trail();
    let states = { root: "", regions: {} };
    /** @type {{region: Region, show: (current: string, step: import("./trail.js").Step|null) => void}[]} */
    let drawings = [];
    let hasModel = false;

    function draw() {
        const current = currentStates();
        waiting.hidden = hasModel || current.length > 0;
        const last = trail.last;
        step.hidden = last === null;
        if (last !== null) {
            setText(step, `Last step: ${last.from} to ${last.to}, on ${last.event}`);
        }
        for (const { region, show } of drawings) {
            const state = current.find((one) => region.states.includes(one)) ?? "";
            show(state, trail.stepTo(state), last);
        }
        if (!hasModel) {
            regions.replaceChildren(...(current.length > 0 ? [plainList()] : []));
        }
    }

    function currentStates() {
        const { root } = states;
        return [root, ...Object.values(states.regions)].filter((state) => typeof state === "string" && state !== "");
    }

    function plainList() {
        const pairs = [["Root", states.root], ...Object.entries(states.regions)];
        return element(
            "dl",
            { class: "facts" },
            ...pairs.flatMap(([name, state]) => [element("dt", {}, name), element("dd", {}, state)]),
        );
    }

    return {
        /** @param {import("../core/protocol.js").Hello} hello */
        startAnew({ machine, entries }) {
            trail = new Trail();
            trail.add(entries);
            states = { root: "", regions: {} };
            hasModel = machine !== null;
            drawings = (machine?.machines ?? []).flatMap(({ name, regions: inner }) =>
                inner.map((region) => drawRegion(region, name)),
            );
            regions.replaceChildren(...drawings.map(({ node }) => node));
            draw();
        },
        /** @param {import("../core/protocol.js").Entry[]} entries */
        add(entries) {
            const before = trail.last;
            trail.add(entries);
            if (trail.last !== before) {
                draw();
            }
        },
        /** @param {{root: string, regions: Record<string, string>}} next */
        show(next) {
            states = next;
            draw();
        },
    };
}

function drawRegion(region, machine) {
    const { width, height, boxes, edges, inner } = layOut(region);
    const title = titleOf(region.name || machine);
    const lines = edges.map((edge) => ({ edge, node: edgeNode(edge) }));
    const shapes = boxes.map((box) => ({ box, node: boxNode(box, inner.get(box.state), box.state === region.initial) }));
    const drawing = svg(
        "svg",
        { class: "diagram", viewBox: `0 0 ${width} ${height}`, width, height, role: "img" },
        ...lines.map(({ node }) => node),
        ...shapes.map(({ node }) => node),
    );
    const now = element("p", { class: "region-now" });
    const next = element("tbody");
    const node = element(
        "section",
        { class: "region", "aria-label": title },
        element("h3", {}, title),
        now,
        element("div", { class: "diagram-around", tabindex: "0", role: "region", "aria-label": `Diagram of ${title}` }, drawing),
        nextTable(next),
    );

    return {
        region,
        node,
        show(current, reached, last) {
            node.dataset.asleep = String(current === "");
            setText(now, current || "not running");
            drawing.setAttribute("aria-label", current === "" ? `${title}: not running` : `${title}: in ${current}`);
            for (const { box, node: shape } of shapes) {
                shape.classList.toggle("current", box.state === current);
            }
            for (const { edge, node: line } of lines) {
                line.classList.toggle("taken", isStep(edge, reached));
                line.classList.toggle("last", isStep(edge, last) && isStep(edge, reached));
            }
            next.replaceChildren(...region.rows.filter(({ from }) => from === current).map(rowOf));
            next.closest("details").hidden = next.childElementCount === 0;
        },
    };
}

// "dataplane_auth" reads "Dataplane auth".
function titleOf(name) {
    const words = name.replaceAll("_", " ");
    return words.charAt(0).toUpperCase() + words.slice(1);
}

const isStep = ({ from, to }, step) => step !== null && step.from === from && step.to === to;

function edgeNode({ from, to, rows, path, head }) {
    return svg(
        "g",
        { class: "edge", "data-from": from, "data-to": to },
        svg("title", {}, rows.map((row) => `${from} to ${to}: ${sentence(row)}`).join("\n")),
        svg("path", { class: "edge-reach", d: path }),
        svg("path", { class: "edge-line", d: path }),
        svg("path", { class: "edge-head", d: head }),
    );
}

function boxNode({ state, x, y }, inner, isInitial) {
    return svg(
        "g",
        { class: "state", "data-state": state },
        inner.length === 0 ? null : svg("title", {}, inner.map((row) => `stays: ${sentence(row)}`).join("\n")),
        svg("rect", { x, y, width: boxWidth, height: boxHeight, rx: 9 }),
        isInitial ? svg("circle", { class: "initial", cx: x + 12, cy: y + boxHeight / 2, r: 3 }) : null,
        svg("text", { x: x + boxWidth / 2, y: y + boxHeight / 2, "text-anchor": "middle", "dominant-baseline": "central" }, state),
    );
}

function sentence({ event, guard, action }) {
    return `${event}${guard === "" ? "" : ` [${guard}]`}${action === "" ? "" : ` / ${action}`}`;
}

function nextTable(body) {
    const heads = ["Event", "If", "Then", "To"].map((name) => element("th", { scope: "col" }, name));
    return element(
        "details",
        { class: "next" },
        element("summary", {}, "What it takes from here"),
        element(
            "div",
            { class: "table-around", tabindex: "0", role: "region", "aria-label": "Transitions from the present state" },
            element("table", {}, element("thead", {}, element("tr", {}, ...heads)), body),
        ),
    );
}

function rowOf({ event, guard, action, to }) {
    return element("tr", {}, ...[event, guard, action, to || "stays"].map((text) => element("td", {}, text)));
}
