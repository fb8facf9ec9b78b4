/**
 * The page: what it shows, where the user is in it, and the two ways in which that changes: a payload comes, or a
 * control is used.
 */
"use strict";
{
    const { button, drawing } = wrenPage.dom;
    const { listenToHost, tellHost } = wrenPage.host;
    const { PayloadError, readDetail } = wrenPage.payload;
    const { findAgain, follow, home, outer } = wrenPage.place;
    const { backLabel, putAwayList, updateList, updateProgress, view } = wrenPage.views;
    const { Entries, announcement, icons, texts } = wrenPage;

    const main = document.querySelector("main");
    const wayBack = document.querySelector("#way-back");
    const fault = document.querySelector("#fault");
    const announcer = document.querySelector("#announcer");

    let lastDetail = null;
    let flow = null;
    let place = home(flow);
    let notes = { sent: false, checked: false };

    const controls = {
        open: (target) => goTo(target),
        send: (event) => {
            tellHost(event);
            noteDone({ sent: true }, texts.sent);
        },
        check: () => {
            tellHost({ type: "posture-update", value: "" });
            noteDone({ checked: true }, texts.checkRequested);
        },
    };

    const entries = new Entries((alert) => goTo({ page: "alert", alert }));

    listenToHost(receive);

    function receive(detail) {
        const before = { flow, place, notes };
        try {
            const next = readDetail(detail);
            if (detail !== lastDetail) {
                take(next);
                lastDetail = detail;
            }
            showFault("");
        } catch (error) {
            ({ flow, place, notes } = before);
            showFault(flow === null ? texts.brokenFirstUpdate : texts.brokenUpdate);
            if (error instanceof PayloadError) {
                console.warn(`update-flow: ${error.message}`);
                return;
            }
            entries.show(flow?.alerts ?? []);
            throw error; // a fault of this page, whose place the console then reports
        }
    }

    // Puts a new flow in the place of the shown one, and the user back to where that leaves them.
    function take(next) {
        const seen = place.page === "list" ? entries.firstInWindow() : null;
        const before = { flow, place, focused: focusedControl(), seen };
        const followed = follow(place, flow, next);
        flow = next;
        place = followed.place;
        entries.show(flow.alerts ?? []);
        if (followed.kept && place.page === "progress") {
            updateProgress(shownView(), flow);
            document.title = pageTitle();
        } else {
            notes = { sent: followed.kept && notes.sent, checked: false };
            render();
            if (followed.kept) {
                holdEntry(before);
                focusControl(controlAfter(before), { preventScroll: true });
            } else {
                arrive();
            }
        }
        announce(announcement(before.flow, flow, followed.gone));
    }

    function goTo(target) {
        place = target;
        notes = { sent: false, checked: false };
        render();
        arrive();
    }

    // Back to where the user came from, and there to the control by which they left.
    function goBack() {
        const left = place;
        goTo(outer(place, flow));
        focusControl({ action: `action-${left.action}`, alert: `entry-${left.alert}`, list: "open-list" }[left.page]);
    }

    function noteDone(done, words) {
        const focused = focusedControl();
        notes = { ...notes, ...done };
        render();
        focusControl(focused, { preventScroll: true });
        main.querySelector(".note").scrollIntoView({ block: "nearest" });
        announce(words);
    }

    function render() {
        showView();
        entries.grows(place.page === "list");
        const target = outer(place, flow);
        const back =
            target &&
            button(
                { class: "quiet", "data-control": "back" },
                goBack,
                drawing(icons.back, "icon"),
                backLabel(flow, target),
            );
        wayBack.replaceChildren(...(back ? [back] : []));
        wayBack.hidden = !back;
        main.removeAttribute("aria-busy");
        document.title = pageTitle();
    }

    function showView() {
        const left = shownView();
        const listView = main.querySelector(":scope > [data-page=list]");
        const isBack = place.page === "list" && listView !== null;
        const shown = isBack ? listView : view(flow, place, controls, notes, entries.list);
        if (isBack) {
            updateList(shown, flow, controls, notes);
        } else {
            main.append(shown);
        }
        if (left === listView && left !== shown && entries.isLong) {
            putAwayList(left);
        } else if (left !== shown) {
            left.remove();
        }
    }

    function shownView() {
        return main.querySelector(":scope > :not([aria-hidden])");
    }

    function pageTitle() {
        return `${document.querySelector("#heading").textContent} - ${texts.product}`;
    }

    // The start of another page. A page without the focus doesn't take it: that would pull the user out of whatever
    // they are doing around its frame.
    function arrive() {
        // To move a long list takes longer than the movement.
        shownView().classList.toggle("arriving", place.page !== "list" || !entries.isLong);
        window.scrollTo(0, 0);
        if (document.hasFocus()) {
            document.querySelector("#heading").focus({ preventScroll: true });
        }
    }

    function focusedControl() {
        const focused = document.activeElement;
        return focused?.id === "heading" ? "heading" : focused?.dataset.control;
    }

    // The name that a control of the page before has on the page now.
    function controlAfter({ flow: before, focused }) {
        const entry = entryNamed(focused);
        if (entry === null) {
            return focused;
        }
        const again = findAgain(before.alerts, entry, flow.alerts);
        return again < 0 ? "heading" : `entry-${again}`;
    }

    // The list changes, but what the user sees of it doesn't move.
    function holdEntry({ flow: before, seen }) {
        if (seen !== null) {
            const again = findAgain(before.alerts, seen.index, flow.alerts);
            entries.hold(again < 0 ? Math.min(seen.index, flow.alerts.length - 1) : again, seen.top);
        }
    }

    // The index of the entry with this control's name; null where the name is another control's, or none.
    function entryNamed(control) {
        return control?.startsWith("entry-") ? Number(control.slice("entry-".length)) : null;
    }

    function focusControl(name, options = {}) {
        if (name === undefined) {
            return;
        }
        const entry = entryNamed(name);
        if (entry !== null) {
            entries.reach(entry);
        }
        const wanted = document.querySelector(`[data-control="${name}"]`) ?? document.querySelector("#heading");
        wanted.focus(options);
    }

    // One line, whatever the number of broken updates; it goes with the next good one.
    function showFault(words) {
        if (fault.textContent !== words) {
            fault.textContent = words;
        }
    }

    // Words that were said already are only said again when the text differs; a space at the end makes it differ.
    function announce(words) {
        if (words !== "") {
            announcer.textContent = announcer.textContent === words ? `${words}\u00a0` : words;
        }
    }
}
