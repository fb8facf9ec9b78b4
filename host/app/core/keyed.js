/**
 * Lists that stay themselves while what they show changes: an item keeps its element, and with it the focus, the
 * frame that is loaded in it and whatever the user has opened.
 */
const known = new WeakMap();

/**
 * Brings the children of `parent` in line with `items`. Children that were put there by other means are left alone.
 * @template Item
 * @param {Element} parent
 * @param {readonly Item[]} items
 * @param {object} ways
 * @param {(item: Item) => string} ways.key equal keys are told apart by their order
 * @param {(item: Item) => Element} ways.make
 * @param {(made: Element, item: Item) => void} ways.update called for new elements too
 */
export function keepChildren(parent, items, { key, make, update }) {
    const before = known.get(parent) ?? new Map();
    const now = new Map();
    for (const item of items) {
        const name = freeKey(now, key(item));
        now.set(name, before.get(name) ?? make(item));
        update(now.get(name), item);
    }
    for (const [name, child] of before) {
        if (!now.has(name)) {
            child.remove();
        }
    }
    place(parent, [...now.values()]);
    known.set(parent, now);
}

function freeKey(taken, wanted) {
    let name = wanted;
    for (let count = 2; taken.has(name); ++count) {
        name = `${wanted} ${count}`;
    }
    return name;
}

// From the end, so that an element that stands right already is never moved: moving takes the focus away.
function place(parent, children) {
    let next = null;
    for (const child of children.reverse()) {
        if (child.parentNode !== parent || (next !== null && child.nextElementSibling !== next)) {
            parent.insertBefore(child, next);
        }
        next = child;
    }
}
