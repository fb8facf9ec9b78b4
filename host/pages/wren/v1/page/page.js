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
    const { backLabel, updateProgress, view } = wrenPage.views;
    const { announcement, icons, texts } = wrenPage;

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

    listenToHost(receive);

    function receive(detail) {
        let next;
        try {
            next = readDetail(detail);
        } catch (error) {
            if (!(error instanceof PayloadError)) {
                throw error;
            }
            console.warn(`update-flow: ${error.message}`);
            showFault(flow === null ? texts.brokenFirstUpdate : texts.brokenUpdate);
            return;
        }
        showFault("");
        if (detail !== lastDetail) {
            lastDetail = detail;
            take(next);
        }
    }

    // Puts a new flow in the place of the shown one, and the user back to where that leaves them.
    function take(next) {
        const before = { flow, place, focused: focusedControl() };
        const followed = follow(place, flow, next);
        flow = next;
        place = followed.place;
        const staysInProgress = followed.kept && place.page === "progress";
        if (staysInProgress) {
            updateProgress(main.firstElementChild, flow);
            document.title = pageTitle();
        } else {
            notes = { sent: followed.kept && notes.sent, checked: false };
            render();
            if (followed.kept) {
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
        const shown = view(flow, place, controls, notes);
        main.replaceChildren(shown);
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

    function pageTitle() {
        return `${document.querySelector("#heading").textContent} - ${texts.product}`;
    }

    // The start of another page. A page without the focus doesn't take it: that would pull the user out of whatever
    // they are doing around its frame.
    function arrive() {
        main.firstElementChild.classList.add("arriving");
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
    function controlAfter({ flow: before, place: from, focused }) {
        if (focused?.startsWith("entry-") && from.page === "list") {
            const again = findAgain(before.alerts, Number(focused.slice("entry-".length)), flow.alerts);
            return again < 0 ? "heading" : `entry-${again}`;
        }
        return focused;
    }

    function focusControl(name, options = {}) {
        if (name === undefined) {
            return;
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
