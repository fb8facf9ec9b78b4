/**
 * Reads the schema of a scenario. Pure.
 *
 * @typedef {object} Knob what one place of a scenario may hold
 * @property {"choice"|"switch"|"number"|"text"|"list"|"group"|"other"} kind
 * @property {string} description
 * @property {unknown} usual the default; undefined where there is none
 * @property {string[]} words of a choice
 * @property {number|undefined} least of a number
 * @property {number|undefined} most of a number
 * @property {Map<string, Knob>} members of a group
 * @property {Knob|null} item of a list
 */

/**
 * @param {object} schema
 * @returns {Knob} of the whole scenario
 */
export function readSchema(schema) {
    return read(schema, schema, 0);
}

const deepest = 6;

function read(node, root, depth) {
    const full = resolve(node, root);
    return {
        kind: depth > deepest ? "other" : kindOf(full),
        description: full.description ?? "",
        usual: full.default,
        words: full.enum ?? [],
        least: full.minimum,
        most: full.maximum,
        members: new Map(
            Object.entries(depth > deepest ? {} : (full.properties ?? {}))
                .filter(([key]) => key !== "$schema")
                .map(([key, inner]) => [key, read(inner, root, depth + 1)]),
        ),
        item: full.items === undefined || depth > deepest ? null : read(full.items, root, depth + 1),
    };
}

function kindOf(node) {
    if (Array.isArray(node.enum)) {
        return "choice";
    }
    return { boolean: "switch", integer: "number", number: "number", string: "text", array: "list", object: "group" }[node.type] ?? "other";
}

// What stands beside a reference goes before what it leads to.
function resolve(node, root) {
    if (typeof node?.$ref !== "string") {
        return typeof node === "object" && node !== null ? node : {};
    }
    const target = node.$ref
        .replace(/^#\//, "")
        .split("/")
        .reduce((at, key) => at?.[key], root);
    return { ...resolve(target, root), ...node };
}

/**
 * What a new item of a list starts with.
 * @param {Knob} knob
 */
export function startOf(knob) {
    if (knob.usual !== undefined) {
        return structuredClone(knob.usual);
    }
    switch (knob.kind) {
        case "group": {
            const told = [...knob.members].filter(([, inner]) => inner.usual !== undefined);
            return Object.fromEntries(told.map(([key, inner]) => [key, startOf(inner)]));
        }
        case "list":
            return [];
        case "choice":
            return knob.words[0];
        case "switch":
            return false;
        case "number":
            return knob.least ?? 0;
        default:
            return "";
    }
}

/** A key as a label: "config_sync_server" reads "Config sync server". */
export function labelOf(key) {
    const words = key.replaceAll("_", " ");
    return words.charAt(0).toUpperCase() + words.slice(1);
}
