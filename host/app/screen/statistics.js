/**
 * The statistics lists as trees of two columns. Which groups are open and where the focus is stays as it is however
 * often the numbers change.
 *
 * @typedef {import("../core/protocol.js").StatisticsGroup} StatisticsGroup
 */
import { element, icon, setText } from "../core/dom.js";
import { icons } from "../core/icons.js";
import { keepChildren } from "../core/keyed.js";

const overview = "overview_stat_outlinelistbox";

/** @param {HTMLElement} panel */
export function useStatistics(panel) {
    const waiting = element("p", { class: "empty" }, "The module has not sent any statistics yet.");
    const lists = element("div", { class: "statistics" });
    panel.append(waiting, lists);

    return {
        /** @param {import("../core/protocol.js").Screen} screen */
        show({ statistics }) {
            const ids = Object.keys(statistics).sort((one, other) => (other === overview) - (one === overview));
            waiting.hidden = ids.length > 0;
            keepChildren(lists, ids, {
                key: (id) => id,
                make: (id) => makeTree(id),
                update: (tree, id) => showTree(tree, statistics[id]),
            });
        },
    };
}

function makeTree(id) {
    const title = id === overview ? "Overview" : "Details";
    const tree = element(
        "table",
        { class: "tree", role: "treegrid", "aria-label": `Statistics: ${title}`, "data-list": id },
        element("caption", {}, title),
        element("tbody", { role: "presentation" }),
    );
    tree.addEventListener("keydown", (event) => moveByKey(tree, event));
    tree.addEventListener("click", ({ target }) => {
        const row = target.closest("tr");
        if (row !== null) {
            focusRow(tree, row);
            if (isGroup(row)) {
                setOpen(tree, row, !isOpen(row));
            }
        }
    });
    return tree;
}

/** @param {StatisticsGroup[]} groups */
function showTree(tree, groups) {
    const hadFocus = tree.contains(document.activeElement);
    const rows = groups.flatMap((group, index) => [
        { group, index },
        ...group.rows.map((row) => ({ group, row })),
    ]);
    keepChildren(tree.tBodies[0], rows, {
        key: ({ group, row }) => (row === undefined ? group.id : `${group.id}/${row.id}`),
        make: ({ group, row, index }) => (row === undefined ? makeGroup(group, index) : makeRow(group)),
        update: ({ cells }, { group, row }) => {
            const texts = row === undefined ? [group.title] : row.columns;
            texts.forEach((text, column) => showText(cells[column]?.lastElementChild, text));
        },
    });
    hideClosed(tree);
    keepOneStop(tree, hadFocus);
}

// The first group is open to begin with: it is what one looks for most often.
function makeGroup({ id }, index) {
    const cell = element("th", { role: "gridcell", scope: "rowgroup", colspan: "2" }, icon(icons.open), element("span"));
    return element(
        "tr",
        { role: "row", "aria-level": "1", "aria-expanded": String(index === 0), "data-group": id, tabindex: "-1" },
        cell,
    );
}

function makeRow({ id }) {
    const cell = () => element("td", { role: "gridcell" }, element("span", { dir: "auto" }));
    return element("tr", { role: "row", "aria-level": "2", "data-of": id, tabindex: "-1" }, cell(), cell());
}

// A value that has changed lights up for a moment.
function showText(span, text) {
    if (span === undefined || span.textContent === text) {
        return;
    }
    const isChange = span.textContent !== "";
    setText(span, text);
    if (isChange && span.closest("td") !== null) {
        span.classList.remove("changed");
        void span.offsetWidth; // begins the movement anew
        span.classList.add("changed");
    }
}

const isGroup = (row) => row.hasAttribute("aria-expanded");
const isOpen = (row) => row.getAttribute("aria-expanded") === "true";
const visibleRows = (tree) => [...tree.tBodies[0].rows].filter((row) => !row.hidden);
const groupOf = (tree, row) => [...tree.tBodies[0].rows].find((one) => one.dataset.group === row.dataset.of);

function setOpen(tree, row, open) {
    row.setAttribute("aria-expanded", String(open));
    hideClosed(tree);
}

function hideClosed(tree) {
    let open = true;
    for (const row of tree.tBodies[0].rows) {
        if (isGroup(row)) {
            open = isOpen(row);
        } else {
            row.hidden = !open;
        }
    }
}

// One row of a tree can be reached by the Tab key; the arrow keys lead on from there.
function keepOneStop(tree, hadFocus) {
    const rows = visibleRows(tree);
    if (rows.length > 0 && !rows.some((row) => row.tabIndex === 0)) {
        for (const row of tree.tBodies[0].rows) {
            row.tabIndex = -1;
        }
        rows[0].tabIndex = 0;
        if (hadFocus && !tree.contains(document.activeElement)) {
            rows[0].focus({ preventScroll: true });
        }
    }
}

function focusRow(tree, row) {
    for (const one of tree.tBodies[0].rows) {
        one.tabIndex = one === row ? 0 : -1;
    }
    row.focus();
}

function moveByKey(tree, event) {
    const row = event.target.closest("tr");
    const rows = visibleRows(tree);
    const at = rows.indexOf(row);
    const goTo = (target) => target !== undefined && focusRow(tree, target);
    const moves = {
        ArrowDown: () => goTo(rows[at + 1]),
        ArrowUp: () => goTo(rows[at - 1]),
        Home: () => goTo(rows[0]),
        End: () => goTo(rows.at(-1)),
        ArrowRight: () => isGroup(row) && (isOpen(row) ? goTo(rows[at + 1]) : setOpen(tree, row, true)),
        ArrowLeft: () => (isGroup(row) ? setOpen(tree, row, false) : goTo(groupOf(tree, row))),
        Enter: () => isGroup(row) && setOpen(tree, row, !isOpen(row)),
        " ": () => isGroup(row) && setOpen(tree, row, !isOpen(row)),
    };
    if (at >= 0 && Object.hasOwn(moves, event.key) && !event.ctrlKey && !event.metaKey && !event.altKey) {
        event.preventDefault();
        moves[event.key]();
    }
}
