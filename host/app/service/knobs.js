/**
 * The knobs of the stand-in, made from the schema of its scenarios. A knob shows what the service says; it sends what
 * the user changes, and lets go of that as soon as the service has spoken again.
 *
 * @typedef {import("./schema.js").Knob} Knob
 *
 * @typedef {object} Shown a knob on the page
 * @property {HTMLElement} node
 * @property {(value: unknown) => void} show
 */
import { button, element, field } from "../core/dom.js";
import { labelOf, startOf } from "./schema.js";

/**
 * @param {Knob} knob
 * @param {string} key
 * @param {(value: unknown) => void} turn called with the new value
 * @returns {Shown}
 */
export function makeKnob(knob, key, turn) {
    const makers = { choice, switch: toggle, number, text, list, group };
    return (makers[knob.kind] ?? other)(knob, labelOf(key), turn);
}

/**
 * Knobs side by side.
 * @param {Knob} knob a group
 * @param {(change: object) => void} turn called with an object that holds the one key that has changed
 * @returns {Shown}
 */
export function makeKnobs(knob, turn) {
    const inner = [...knob.members].map(([key, member]) => [key, makeKnob(member, key, (value) => turn({ [key]: value }))]);
    const isWide = ([key]) => ["list", "group"].includes(knob.members.get(key).kind);
    const node = element(
        "div",
        { class: "knobs" },
        element("div", { class: "knob-grid" }, ...inner.filter((one) => !isWide(one)).map(([, shown]) => shown.node)),
        ...inner.filter(isWide).map(([, shown]) => shown.node),
    );
    return {
        node,
        show: (value) => inner.forEach(([key, shown]) => shown.show(value?.[key])),
    };
}

function group(knob, label, turn) {
    const inner = makeKnobs(knob, turn);
    const node = element("details", { class: "knob-group" }, element("summary", { title: knob.description || null }, label), inner.node);
    return { node, show: inner.show };
}

function choice(knob, label, turn) {
    const select = element("select", {}, ...knob.words.map((word) => element("option", {}, word)));
    select.addEventListener("change", () => turn(select.value));
    const none = element("option", { value: "" }, "not told");
    return {
        node: field(label, select, knob.description),
        show(value) {
            const shown = value ?? knob.usual;
            if (shown === undefined) {
                select.prepend(none);
            } else {
                none.remove();
            }
            select.value = shown ?? "";
        },
    };
}

function toggle(knob, label, turn) {
    const input = element("input", { type: "checkbox", role: "switch" });
    input.addEventListener("change", () => turn(input.checked));
    const node = element("label", { class: "switch", title: knob.description || null }, input, element("span", {}, label));
    return {
        node,
        show: (value) => {
            input.checked = value ?? knob.usual ?? false;
        },
    };
}

function number(knob, label, turn) {
    const limits = { min: knob.least ?? null, max: knob.most ?? null };
    const input = element("input", { type: "number", step: "1", inputmode: "numeric", placeholder: "not told", ...limits });
    const read = () => (input.value === "" || !input.checkValidity() ? null : Number(input.value));
    return typed(knob, label, input, read, turn);
}

function text(knob, label, turn) {
    const input = element("input", { type: "text", spellcheck: "false", autocomplete: "off" });
    return typed(knob, label, input, () => input.value, turn);
}

// What is being typed is not overwritten; it goes out when the user is done with it.
function typed(knob, label, input, read, turn) {
    let known = "";
    let isTyping = false;
    input.addEventListener("input", () => {
        isTyping = true;
    });
    input.addEventListener("change", () => {
        isTyping = false;
        const value = read();
        if (value === null) {
            input.value = known;
        } else {
            turn(value);
        }
    });
    return {
        node: field(label, input, knob.description),
        show(value) {
            const shown = value ?? knob.usual;
            known = shown === undefined ? "" : String(shown);
            if (!isTyping) {
                input.value = known;
            }
        },
    };
}

// A list is told as a whole: every change of an item sends all of them.
function list(knob, label, turn) {
    const items = element("div", { class: "items" });
    const count = element("span", { class: "item-count" });
    let values = [];
    let shown = [];
    const send = (next) => turn(next);
    const node = element(
        "details",
        { class: "knob-group" },
        element("summary", { title: knob.description || null }, label, count),
        items,
        button({ class: "quiet small" }, () => send([...values, startOfItem(knob, values)]), "Add"),
    );

    function makeItem(index) {
        const made = makeItemKnob(knob.item, index, (value) => send(values.with(index, value)), () => values[index]);
        const remove = button(
            { class: "quiet small", "aria-label": `Remove ${label} ${index + 1}` },
            () => send(values.toSpliced(index, 1)),
            "Remove",
        );
        items.append(element("div", { class: "item" }, made.node, remove));
        return made;
    }

    return {
        node,
        show(value) {
            values = value ?? knob.usual ?? [];
            count.textContent = String(values.length);
            while (shown.length > values.length) {
                shown.pop();
                items.lastElementChild.remove();
            }
            while (shown.length < values.length) {
                shown.push(makeItem(shown.length));
            }
            shown.forEach((one, index) => one.show(values[index]));
        },
    };
}

function makeItemKnob(item, index, turn, present) {
    return item?.kind === "group"
        ? makeKnobs(item, (change) => turn({ ...present(), ...change }))
        : makeKnob(item ?? { kind: "other", members: new Map(), words: [] }, `item ${index + 1}`, turn);
}

// An id must differ from the ids that there are.
function startOfItem({ item }, values) {
    const made = item === null ? {} : startOf(item);
    for (const key of item?.members.keys() ?? []) {
        const isId = key === "id" || key.endsWith("_id");
        if (isId && made[key] === undefined) {
            made[key] = `${key.replace(/_?id$/, "") || "item"}-${values.length + 1}`;
        }
    }
    return made;
}

function other(knob, label, turn) {
    const input = element("textarea", { rows: "3", spellcheck: "false" });
    input.addEventListener("change", () => {
        try {
            turn(JSON.parse(input.value));
            input.setCustomValidity("");
        } catch (error) {
            input.setCustomValidity(error.message);
            input.reportValidity();
        }
    });
    return {
        node: field(`${label} (JSON)`, input, knob.description),
        show: (value) => {
            input.value = value === undefined ? "" : JSON.stringify(value, null, 2);
        },
    };
}
