/**
 * What has changed from one JSON document to the next. Pure.
 *
 * @typedef {object} Change
 * @property {string} path such as "enrollments[0].label"; "(document)" for the whole
 * @property {string|null} before as JSON; null where it was not there
 * @property {string|null} after as JSON; null where it is gone
 */

/**
 * @param {unknown} before
 * @param {unknown} after
 * @returns {Change[]} in the order of the newer document, what is gone last
 */
export function changes(before, after) {
    const found = [];
    compare("", before, after, found);
    return found;
}

function compare(path, before, after, found) {
    const isPair = isContainer(before) && isContainer(after) && Array.isArray(before) === Array.isArray(after);
    if (!isPair) {
        if (JSON.stringify(before) !== JSON.stringify(after)) {
            found.push({ path: path || "(document)", before: written(before), after: written(after) });
        }
        return;
    }
    const keys = new Set([...Object.keys(after), ...Object.keys(before)]);
    for (const key of keys) {
        const inner = Array.isArray(after) ? `${path}[${key}]` : path === "" ? key : `${path}.${key}`;
        compare(inner, ownValue(before, key), ownValue(after, key), found);
    }
}

function ownValue(container, key) {
    return Object.hasOwn(container, key) ? container[key] : undefined;
}

function isContainer(value) {
    return typeof value === "object" && value !== null;
}

function written(value) {
    return value === undefined ? null : JSON.stringify(value);
}
