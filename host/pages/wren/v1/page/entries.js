/**
 * The entries of the list of alerts. The first are there at once. The others come in turns, one a frame, so that the
 * page answers while a long list grows.
 *
 * Entries stand in blocks, which the browser lays out one by one (see `page.css`). None is left out while it is out of
 * sight: screen readers would not find it.
 */
"use strict";
{
    const { element } = wrenPage.dom;
    const { entry, lookOf } = wrenPage.views;

    const entriesInBlock = 50;
    const entriesAtOnce = 500;
    const entriesInTurn = 250;

    class Entries {
        /** The element of the list, the same for as long as the page is open. */
        list = element("div", { class: "entries", role: "list" });
        #open;
        #alerts = [];
        #looks = [];
        #items = [];
        #isInSight = false;
        #turn;

        /** @param {(index: number) => void} open called when an entry is pressed, with the index of its alert */
        constructor(open) {
            this.#open = open;
        }

        /** Whether making the list again would take more than a moment. */
        get isLong() {
            return this.#items.length > entriesAtOnce;
        }

        /**
         * Makes this the list of these alerts. Entries before the first and behind the last that differs stay the
         * elements that they are.
         * @param {Alert[]} alerts
         */
        show(alerts) {
            const looks = alerts.map(lookOf);
            const before = this.#looks;
            const isWhole = this.#items.length === before.length;
            const most = Math.min(this.#items.length, looks.length);
            const head = countWhile(most, (at) => before[at] === looks[at]);
            const tail = countWhile(isWhole ? most - head : 0, (at) => before.at(-1 - at) === looks.at(-1 - at));
            this.#alerts = alerts;
            this.#looks = looks;
            if (looks.length - tail - head <= entriesAtOnce) {
                this.#replace(head, this.#items.length - tail, alerts.slice(head, looks.length - tail));
            } else {
                this.#replace(head, this.#items.length, []);
            }
            this.#number(before.length === looks.length ? head : 0);
            this.#grow(entriesAtOnce);
        }

        /**
         * Says whether the list is in sight. While it isn't, entries have no turns: the browser would not lay them out.
         * @param {boolean} isInSight
         */
        grows(isInSight) {
            this.#isInSight = isInSight;
            this.#planTurn();
        }

        /**
         * Sees to it that the entry of this index and those around it are there, without waiting for their turn.
         * @param {number} index
         */
        reach(index) {
            this.#grow(index + entriesInTurn);
        }

        /**
         * Which entry is the first in the window, and how far below the window's top it begins.
         * @returns {{index: number, top: number}|null} in pixels; null while the list begins below the window's top
         */
        firstInWindow() {
            const reachesWindow = (one) => one.getBoundingClientRect().bottom > 0;
            const block = [...this.list.children].find(reachesWindow);
            const item = block && [...block.children].find(reachesWindow);
            if (!item || this.list.getBoundingClientRect().top > 0) {
                return null;
            }
            return { index: this.#items.indexOf(item), top: item.getBoundingClientRect().top };
        }

        /**
         * Scrolls until the entry begins so far below the window's top.
         * @param {number} index
         * @param {number} top in pixels
         */
        hold(index, top) {
            this.reach(index);
            window.scrollBy(0, this.#items[index].getBoundingClientRect().top - top);
        }

        // Puts entries of these alerts in the place of those from start to end.
        #replace(start, end, alerts) {
            const items = alerts.map((alert) => this.#newItem(alert));
            const next = this.#items[end];
            if (next) {
                next.before(...items);
                split(next.parentElement);
            } else {
                this.#append(items);
            }
            for (const item of this.#items.splice(start, end - start, ...items)) {
                const block = item.parentElement;
                item.remove();
                if (!block.hasChildNodes()) {
                    block.remove();
                }
            }
        }

        // Goes on with the list until there are so many entries; the others follow.
        #grow(count) {
            const start = this.#items.length;
            const items = this.#alerts.slice(start, count).map((alert) => this.#newItem(alert));
            this.#append(items);
            this.#items.push(...items);
            this.#number(start);
            this.#planTurn();
        }

        #planTurn() {
            cancelAnimationFrame(this.#turn);
            if (this.#isInSight && this.#items.length < this.#alerts.length) {
                this.#turn = requestAnimationFrame(() => this.#grow(this.#items.length + entriesInTurn));
            }
        }

        #append(items) {
            for (let start = 0; start < items.length; start += entriesInBlock) {
                this.list.append(newBlock(items.slice(start, start + entriesInBlock)));
            }
        }

        #newItem(alert) {
            const open = () => this.#open(this.#items.indexOf(item));
            const item = element("div", { class: "item", role: "listitem" }, entry(alert, open));
            return item;
        }

        // The list may not be complete, so each entry says itself which of how many it is.
        #number(start) {
            const size = String(this.#alerts.length);
            for (let index = start; index < this.#items.length; ++index) {
                const item = this.#items[index];
                item.setAttribute("aria-posinset", String(index + 1));
                item.setAttribute("aria-setsize", size);
                item.firstElementChild.dataset.control = `entry-${index}`;
            }
        }
    }

    function newBlock(items) {
        return element("div", { class: "block", role: "presentation" }, ...items);
    }

    // Updates can make a block grow, which is then too much to lay out for one entry.
    function split(block) {
        if (block.childElementCount > 2 * entriesInBlock) {
            const items = [...block.children];
            block.before(newBlock(items.slice(0, entriesInBlock)));
            split(block);
        }
    }

    function countWhile(most, holds) {
        let count = 0;
        while (count < most && holds(count)) {
            ++count;
        }
        return count;
    }

    wrenPage.Entries = Entries;
}
