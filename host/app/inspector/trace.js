/**
 * The trace: everything that went into the module and came out of it, in order, with what the user wants to see of it
 * chosen above and one entry in full below.
 */
import { exactTimeOfDay } from "../core/clock.js";
import { button, element, icon, setAttribute, setText } from "../core/dom.js";
import { icons } from "../core/icons.js";
import { badge, useDetail } from "./detail.js";
import { Journal } from "./journal.js";
import { badgeOf, kindOf, kinds, summaryOf, weightOf } from "./kinds.js";
import { LongList } from "./long-list.js";

/**
 * @param {HTMLElement} panel
 */
export function useTrace(panel) {
    const journal = new Journal();
    const choice = { kinds: new Set(kinds.map(({ name }) => name)), severity: 0, text: "", grouped: true };
    let selected = 0;
    let missed = 0;
    let isDrawn = true;

    const list = new LongList({
        label: "Inputs and outputs",
        key: ({ entry }) => String(entry.seq),
        make: makeRow,
        fill: fillRow,
        chosen: ({ entry }) => read(entry.seq),
        opened: ({ entry }, open) => {
            journal.setOpen(entry.seq, open);
            draw();
        },
        followed: (follows) => follow.setAttribute("aria-pressed", String(follows)),
    });
    const count = element("p", { class: "count" });
    const detailNode = element("section", { class: "detail", "aria-label": "Entry", tabindex: "-1" });
    const detail = useDetail(detailNode, journal, goTo);
    const filters = kinds.map(makeFilter);
    const follow = toggle("Follow", true, (pressed) => {
        list.follows = pressed;
    });
    panel.append(
        element(
            "div",
            { class: "toolbar" },
            element("div", { class: "chips", role: "group", "aria-label": "Kinds" }, ...filters.map(({ chip }) => chip)),
            element(
                "div",
                { class: "tools" },
                searchField(),
                severityField(),
                toggle("Group", true, (pressed) => change({ grouped: pressed })),
                follow,
                count,
            ),
        ),
        list.node,
        detailNode,
    );

    function makeFilter({ name, label }) {
        const number = element("span", { class: "chip-count" });
        const chip = toggle(label, true, (pressed) => {
            choice.kinds[pressed ? "add" : "delete"](name);
            draw();
        });
        chip.append(number);
        chip.dataset.kind = name;
        chip.classList.add("chip");
        return { name, chip, number };
    }

    function searchField() {
        const input = element("input", { type: "search", class: "search", placeholder: "Search", "aria-label": "Search the trace" });
        input.addEventListener("input", () => change({ text: input.value.trim().toLowerCase() }));
        return input;
    }

    function severityField() {
        const names = ["All log lines", "Info and above", "Warnings and errors", "Errors"];
        const options = names.map((name, value) => element("option", { value: String(value) }, name));
        const select = element("select", { "aria-label": "Least severity of log lines" }, ...options);
        select.addEventListener("change", () => change({ severity: Number(select.value) }));
        return select;
    }

    function change(next) {
        Object.assign(choice, next);
        draw();
    }

    function read(seq) {
        selected = seq;
        detail.show(journal.find(seq));
    }

    function goTo(seq) {
        list.activate(String(seq));
        read(seq);
    }

    function draw() {
        isDrawn = true;
        const rows = journal.rows(choice);
        list.show(rows);
        const counts = journal.counts();
        for (const { name, chip, number } of filters) {
            const ofKind = counts.get(name) ?? 0;
            setText(number, ofKind === 0 ? "" : String(ofKind));
            setAttribute(chip, "data-empty", ofKind === 0 ? "true" : null);
        }
        const shown = journal.size === 0 ? "Nothing yet" : rows.length === 0 ? "Nothing matches" : `${rows.length} shown`;
        setText(count, missed === 0 ? shown : `${shown}, ${missed} missed`);
    }

    // Bursts are drawn once a frame, however many messages they come in.
    function drawSoon() {
        if (isDrawn) {
            isDrawn = false;
            requestAnimationFrame(draw);
        }
    }

    draw();
    return {
        /** A host that was not seen before, with what it remembers. */
        startAnew(entries) {
            missed = 0;
            journal.clear();
            journal.add(entries);
            if (journal.find(selected) === undefined) {
                detail.clear();
            }
            drawSoon();
        },
        /**
         * @param {import("../core/protocol.js").Entry[]} entries
         * @param {number} [dropped] how many before these never came
         */
        add(entries, dropped = 0) {
            missed += dropped;
            journal.add(entries);
            drawSoon();
        },
    };
}

function toggle(label, pressed, changed) {
    const made = button({ class: "toggle", "aria-pressed": String(pressed) }, () => {
        const next = made.getAttribute("aria-pressed") !== "true";
        made.setAttribute("aria-pressed", String(next));
        changed(next);
    }, label);
    return made;
}

function makeRow() {
    return element(
        "div",
        { class: "row" },
        element("span", { class: "twist", "aria-hidden": "true" }, icon(icons.open)),
        element("span", { class: "row-time" }),
        element("span", { class: "row-badge" }),
        element("span", { class: "row-text" }),
    );
}

const filled = new WeakMap();

function fillRow(made, { entry }) {
    if (filled.get(made) === entry) {
        return;
    }
    filled.set(made, entry);
    made.dataset.kind = kindOf(entry);
    made.dataset.weight = weightOf(entry);
    const [, time, label, text] = made.children;
    setText(time, exactTimeOfDay(entry.time));
    label.replaceChildren(badge(entry));
    setText(text, summaryOf(entry).slice(0, 400));
    made.setAttribute("aria-label", `${badgeOf(entry)}: ${text.textContent}`);
}
