/**
 * A tree of rows of one height of which only those in view are elements, so that thousands cost no more than a few
 * dozen. One row is the active one; the list itself keeps the focus.
 *
 * @template Row
 * @typedef {object} Ways
 * @property {string} label
 * @property {(row: Row) => string} key
 * @property {() => HTMLElement} make an empty row
 * @property {(made: HTMLElement, row: Row) => void} fill
 * @property {(row: Row) => void} chosen called when another row becomes the active one by the user's hand
 * @property {(row: Row, open: boolean) => void} opened
 * @property {(follows: boolean) => void} followed called when the list begins or ceases to go to its end
 */
import { element } from "../core/dom.js";

const rowHeight = 30;
const margin = 10;

export class LongList {
    #rows = [];
    #activeKey = "";
    #follows = true;
    /** @type {Map<string, HTMLElement>} rows in view */
    #shown = new Map();

    /** @param {Ways} ways */
    constructor(ways) {
        this.ways = ways;
        this.field = element("div", { class: "list-field", role: "presentation" });
        this.node = element("div", { class: "list", role: "tree", tabindex: "0", "aria-label": ways.label }, this.field);
        this.node.addEventListener("scroll", () => this.#scrolled());
        this.node.addEventListener("keydown", (event) => this.#key(event));
        this.node.addEventListener("click", (event) => this.#click(event));
        new ResizeObserver(() => this.#resized()).observe(this.node);
    }

    /** Shows these rows in the place of all others. */
    show(rows) {
        this.#rows = rows;
        this.field.style.setProperty("height", `${rows.length * rowHeight}px`);
        if (this.#follows) {
            this.node.scrollTop = this.node.scrollHeight;
        }
        this.#draw();
    }

    /** Whether the list goes to its end with every new row. */
    get follows() {
        return this.#follows;
    }

    set follows(follows) {
        this.#follows = follows;
        if (follows) {
            this.node.scrollTop = this.node.scrollHeight;
        }
    }

    /** Makes a row the active one and brings it into view. Whoever reads a row doesn't want it to move away. */
    activate(key) {
        this.#activeKey = key;
        this.#setFollows(this.#index() === this.#rows.length - 1);
        this.#showActive();
        this.#draw();
    }

    #showActive() {
        const index = this.#index();
        const top = index * rowHeight;
        const { scrollTop, clientHeight } = this.node;
        if (index >= 0 && top < scrollTop) {
            this.node.scrollTop = top;
        } else if (index >= 0 && top + rowHeight > scrollTop + clientHeight) {
            this.node.scrollTop = top + rowHeight - clientHeight;
        }
    }

    #setFollows(follows) {
        if (follows !== this.#follows) {
            this.#follows = follows;
            this.ways.followed(follows);
        }
    }

    #index() {
        return this.#rows.findIndex((row) => this.ways.key(row) === this.#activeKey);
    }

    #draw() {
        const { scrollTop, clientHeight } = this.node;
        const first = Math.max(0, Math.floor(scrollTop / rowHeight) - margin);
        const last = Math.min(this.#rows.length, Math.ceil((scrollTop + clientHeight) / rowHeight) + margin);
        const shown = new Map();
        const nodes = [];
        for (let index = first; index < last; ++index) {
            const row = this.#rows[index];
            const key = this.ways.key(row);
            const made = this.#shown.get(key) ?? this.ways.make();
            this.#describe(made, row, key);
            made.style.setProperty("transform", `translateY(${index * rowHeight}px)`);
            shown.set(key, made);
            nodes.push(made);
        }
        for (const [key, made] of this.#shown) {
            if (!shown.has(key)) {
                made.remove();
            }
        }
        nodes.forEach((made, at) => {
            if (this.field.children[at] !== made) {
                this.field.insertBefore(made, this.field.children[at] ?? null);
            }
        });
        this.#shown = shown;
        const active = shown.get(this.#activeKey);
        if (active === undefined) {
            this.node.removeAttribute("aria-activedescendant");
        } else {
            this.node.setAttribute("aria-activedescendant", active.id);
        }
    }

    #describe(made, row, key) {
        made.id = `row-${key}`;
        made.dataset.key = key;
        made.setAttribute("role", "treeitem");
        made.setAttribute("aria-level", String(row.level));
        made.setAttribute("aria-posinset", String(row.position));
        made.setAttribute("aria-setsize", String(row.siblings));
        made.setAttribute("aria-selected", String(key === this.#activeKey));
        if (row.open === null) {
            made.removeAttribute("aria-expanded");
        } else {
            made.setAttribute("aria-expanded", String(row.open));
        }
        this.ways.fill(made, row);
    }

    #scrolled() {
        const { scrollTop, scrollHeight, clientHeight } = this.node;
        this.#setFollows(scrollTop + clientHeight >= scrollHeight - 4);
        this.#draw();
    }

    #resized() {
        if (this.#follows) {
            this.node.scrollTop = this.node.scrollHeight;
        } else {
            this.#showActive();
        }
        this.#draw();
    }

    #choose(index) {
        const row = this.#rows[Math.min(this.#rows.length - 1, Math.max(0, index))];
        if (row !== undefined) {
            this.activate(this.ways.key(row));
            this.ways.chosen(row);
        }
    }

    #click({ target }) {
        const made = target.closest("[role=treeitem]");
        const index = this.#rows.findIndex((row) => this.ways.key(row) === made?.dataset.key);
        if (index < 0) {
            return;
        }
        const row = this.#rows[index];
        if (row.open !== null && target.closest(".twist") !== null) {
            this.ways.opened(row, !row.open);
        }
        this.#choose(index);
    }

    #key(event) {
        const index = this.#index();
        const row = this.#rows[index];
        const page = Math.max(1, Math.floor(this.node.clientHeight / rowHeight) - 1);
        const moves = {
            ArrowDown: () => this.#choose(index + 1),
            ArrowUp: () => this.#choose(index < 0 ? this.#rows.length - 1 : index - 1),
            PageDown: () => this.#choose(index + page),
            PageUp: () => this.#choose(index - page),
            Home: () => this.#choose(0),
            End: () => this.#choose(this.#rows.length - 1),
            ArrowRight: () => this.#goIn(index, row),
            ArrowLeft: () => this.#goOut(index, row),
        };
        if (Object.hasOwn(moves, event.key) && !event.ctrlKey && !event.metaKey && !event.altKey) {
            event.preventDefault();
            moves[event.key]();
        }
    }

    #goIn(index, row) {
        if (row?.open === false) {
            this.ways.opened(row, true);
        } else if (row?.open === true) {
            this.#choose(index + 1);
        }
    }

    #goOut(index, row) {
        if (row?.open === true) {
            this.ways.opened(row, false);
        } else if (row?.level === 2) {
            this.#choose(index - row.position);
        }
    }
}
