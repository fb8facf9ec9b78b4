/**
 * All that has happened, as far as it is kept, and which of it is to be seen. It knows nothing of elements.
 *
 * @typedef {import("../core/protocol.js").Entry} Entry
 *
 * @typedef {object} Choice what the user wants to see
 * @property {Set<string>} kinds by name
 * @property {number} severity the least of log lines
 * @property {string} text that must stand in an entry; empty for all
 * @property {boolean} grouped outputs under the input that caused them
 *
 * @typedef {object} ShownRow
 * @property {Entry} entry
 * @property {1|2} level 2 for an output under its input
 * @property {boolean|null} open whether a group is open; null where there is nothing to open
 * @property {number} position among its siblings, from 1
 * @property {number} siblings
 */
import { isInput, kindOf } from "./kinds.js";

const most = 20000;

export class Journal {
    /** @type {Entry[]} in order of their `seq` */
    #entries = [];
    /** @type {Map<number, Entry>} */
    #bySeq = new Map();
    /** @type {Map<number, string>} what is searched, made when first needed */
    #searched = new Map();
    #closed = new Set();

    /** Forgets everything, for a host that was not seen before. */
    clear() {
        this.#entries = [];
        this.#bySeq.clear();
        this.#searched.clear();
        this.#closed.clear();
    }

    /** @param {Entry[]} entries */
    add(entries) {
        for (const entry of entries) {
            this.#entries.push(entry);
            this.#bySeq.set(entry.seq, entry);
        }
        for (const { seq } of this.#entries.splice(0, this.#entries.length - most)) {
            this.#bySeq.delete(seq);
            this.#searched.delete(seq);
            this.#closed.delete(seq);
        }
    }

    get size() {
        return this.#entries.length;
    }

    /** @returns {Entry|undefined} */
    find(seq) {
        return this.#bySeq.get(seq);
    }

    isOpen(seq) {
        return !this.#closed.has(seq);
    }

    setOpen(seq, open) {
        if (open) {
            this.#closed.delete(seq);
        } else {
            this.#closed.add(seq);
        }
    }

    /** How many entries there are of each kind. */
    counts() {
        const counts = new Map();
        for (const entry of this.#entries) {
            const kind = kindOf(entry);
            counts.set(kind, (counts.get(kind) ?? 0) + 1);
        }
        return counts;
    }

    /**
     * The document of the same name that came before this one.
     * @param {Entry} entry a delivered document
     * @returns {Entry|undefined}
     */
    documentBefore(entry) {
        return this.#entries.findLast(
            (other) => other.seq < entry.seq && other.do === "deliver" && other.document === entry.document,
        );
    }

    /**
     * @param {Choice} choice
     * @returns {ShownRow[]}
     */
    rows(choice) {
        const wanted = this.#entries.filter((entry) => this.#isWanted(entry, choice));
        return choice.grouped ? this.#grouped(wanted) : numbered(wanted.map((entry) => ({ entry, level: 1, open: null })));
    }

    #isWanted(entry, { kinds, severity, text }) {
        return (
            kinds.has(kindOf(entry)) &&
            (entry.out !== "log" || entry.severity >= severity) &&
            (text === "" || this.#searchedText(entry).includes(text))
        );
    }

    // An input stands above its outputs even where it isn't wanted for itself: they make no sense without it.
    #grouped(wanted) {
        const groups = new Map();
        const groupOf = (entry) => {
            const head = isInput(entry) ? entry : (this.#bySeq.get(entry.input) ?? entry);
            if (!groups.has(head.seq)) {
                groups.set(head.seq, { head, members: [] });
            }
            return groups.get(head.seq);
        };
        for (const entry of wanted) {
            const group = groupOf(entry);
            if (group.head !== entry) {
                group.members.push(entry);
            }
        }
        const rows = [];
        for (const { head, members } of [...groups.values()].sort((one, other) => one.head.seq - other.head.seq)) {
            const open = members.length === 0 ? null : this.isOpen(head.seq);
            rows.push({ entry: head, level: 1, open });
            if (open) {
                for (const entry of members) {
                    rows.push({ entry, level: 2, open: null });
                }
            }
        }
        return numbered(rows);
    }

    #searchedText(entry) {
        let text = this.#searched.get(entry.seq);
        if (text === undefined) {
            text = Object.values(entry).join(" ").toLowerCase();
            this.#searched.set(entry.seq, text);
        }
        return text;
    }
}

// Where each row stands among its siblings, for screen readers, which see only a part of the list.
function numbered(rows) {
    const outer = rows.filter(({ level }) => level === 1).length;
    let position = 0;
    let start = 0;
    rows.forEach((row, index) => {
        if (row.level === 1) {
            Object.assign(row, { position: ++position, siblings: outer });
            start = index;
        } else {
            row.position = index - start;
        }
    });
    let inner = 0;
    for (let index = rows.length - 1; index >= 0; --index) {
        if (rows[index].level === 2) {
            inner = Math.max(inner, rows[index].position);
            rows[index].siblings = inner;
        } else {
            inner = 0;
        }
    }
    return rows;
}
