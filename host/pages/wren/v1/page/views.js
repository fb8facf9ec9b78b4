/**
 * The pages as elements. Each view takes what it shows and what its controls do, and returns the children of the
 * page's main part; none of them keeps anything.
 *
 * A control that can hold the focus across payloads carries `data-control`, its name on the page.
 *
 * @typedef {object} Controls what the page does when a control is used
 * @property {(place: Place) => void} open goes to a place further in
 * @property {(event: KestrelSuiteEvent) => void} send
 * @property {() => void} check
 *
 * @typedef {object} Notes what has been done on this page already
 * @property {boolean} sent the action's event went out
 * @property {boolean} checked a new check was requested
 */
"use strict";
{
    const { webAddress } = wrenPage.address;
    const { button, drawing, element, textElement } = wrenPage.dom;
    const { icons, texts } = wrenPage;

    /**
     * @param {Flow} flow
     * @param {Place} place
     * @param {Controls} controls
     * @param {Notes} notes
     * @param {HTMLElement} entries the element of the list's entries
     * @returns {HTMLElement}
     */
    function view(flow, place, controls, notes, entries) {
        const children = {
            progress: () => progressView(flow),
            clear: () => clearView(),
            section: () => sectionView(flow, controls),
            list: () => listView(flow, controls, notes, entries),
            alert: () => alertView(flow.alerts[place.alert], place, controls, notes),
            action: () => actionView(flow.alerts[place.alert].actions[place.action], controls, notes),
        }[place.page]();
        const attributes = { class: "view", "data-page": place.page, "aria-labelledby": "heading" };
        return element("article", attributes, ...children);
    }

    /**
     * The name of what stands in the masthead beside the way back.
     * @param {Flow} flow
     * @param {Place} place where the way back leads
     * @returns {string}
     */
    function backLabel(flow, place) {
        return place.page === "list" ? texts.backToAlerts(flow.alerts.length) : texts.back;
    }

    /**
     * Brings a progress page up to date in place, so that its bar moves and no one's reading is interrupted.
     * @param {HTMLElement} shown the view of an enrollment
     * @param {EnrollmentFlow} flow
     */
    function updateProgress(shown, { title, percent }) {
        shown.querySelector("#heading").textContent = title || texts.progress;
        shown.querySelector(".percent").textContent = texts.percent(percent);
        const meter = shown.querySelector(".meter");
        meter.setAttribute("aria-valuenow", String(percent));
        meter.firstElementChild.style.setProperty("--done", String(percent / 100));
    }

    /**
     * Brings the list's page up to date in place, around its entries, and back if it was put away.
     * @param {HTMLElement} shown the view of the list
     * @param {AlertFlow} flow
     * @param {Controls} controls
     * @param {Notes} notes
     */
    function updateList(shown, { strings }, controls, notes) {
        leaveEntries(shown);
        shown.prepend(...listHead(strings));
        shown.append(checkAgain(controls, notes));
        shown.classList.remove("arriving");
        shown.removeAttribute("aria-hidden");
    }

    /**
     * Leaves the list's page in the document, but out of sight and reach. To lay out a long list again takes seconds.
     * @param {HTMLElement} shown the view of the list
     */
    function putAwayList(shown) {
        leaveEntries(shown);
        shown.setAttribute("aria-hidden", "true");
    }

    function leaveEntries(shown) {
        shown.querySelectorAll(":scope > :not(.entries)").forEach((child) => child.remove());
    }

    /**
     * An alert in the list.
     * @param {Alert} alert
     * @param {() => void} open
     * @returns {HTMLElement}
     */
    function entry(alert, open) {
        return button(
            { class: "entry" },
            open,
            badge(iconOf(alert), toneOf(alert)),
            element(
                "span",
                { class: "entry-texts" },
                element("span", { class: "entry-title", dir: "auto" }, alert.title || texts.alert),
                textElement("span", entryText(alert), { class: "entry-text" }),
            ),
            drawing(icons.forward, "icon forward"),
        );
    }

    /**
     * All that an alert's entry shows; alerts of which it is the same have entries that can't be told apart.
     * @param {Alert} alert
     * @returns {string}
     */
    function lookOf(alert) {
        return JSON.stringify([iconOf(alert), toneOf(alert), alert.title, entryText(alert)]);
    }

    function progressView(flow) {
        const meter = element(
            "div",
            {
                class: "meter",
                role: "progressbar",
                "aria-labelledby": "heading",
                "aria-valuemin": "0",
                "aria-valuemax": "100",
            },
            element("div", { class: "meter-fill" }),
        );
        const shown = [
            badge("progress", "calm"),
            heading(flow.title, texts.progress),
            element("div", { class: "progress" }, meter, element("p", { class: "percent", "aria-hidden": "true" })),
            element("p", { class: "text" }, texts.progressText),
        ];
        updateProgress(element("div", {}, ...shown), flow);
        return shown;
    }

    function clearView() {
        return [
            badge("clear", "good"),
            heading("", texts.clearTitle),
            element("p", { class: "text" }, texts.clearText),
        ];
    }

    function sectionView({ strings }, controls) {
        return [
            badge("attention", "attention"),
            heading(strings.sectionTitle, texts.alerts),
            textElement("p", strings.sectionText, { class: "text" }),
            element(
                "div",
                { class: "controls" },
                button(
                    { class: "primary", "data-control": "open-list", dir: "auto" },
                    () => controls.open({ page: "list" }),
                    strings.sectionLabel || texts.openList,
                ),
            ),
        ];
    }

    function listView({ strings }, controls, notes, entries) {
        return [...listHead(strings), entries, checkAgain(controls, notes)];
    }

    function listHead({ listTitle, listText }) {
        const text = textElement("p", listText, { class: "text" });
        return [heading(listTitle, texts.alerts), ...(text ? [text] : [])];
    }

    // Without a short text, alerts of one title could not be told apart.
    function entryText(alert) {
        return alert.shortText || alert.longText;
    }

    function alertView(alert, place, controls, notes) {
        return [
            badge(iconOf(alert), toneOf(alert)),
            heading(alert.title, texts.alert),
            // Most long texts say all of the short one again; then the short one has nothing to add.
            alert.longText.includes(alert.shortText) ? null : textElement("p", alert.shortText, { class: "lead" }),
            textElement("p", alert.longText, { class: "text" }),
            ...alert.actions.map((action, index) =>
                action.kind === "local"
                    ? openAction(action, { page: "action", alert: place.alert, action: index }, controls)
                    : remoteAction(action, index),
            ),
            offersWayOut(alert) ? null : checkAgain(controls, notes),
        ];
    }

    function openAction(action, target, controls) {
        return element(
            "div",
            { class: "controls" },
            button(
                { class: "primary", "data-control": `action-${target.action}`, dir: "auto" },
                () => controls.open(target),
                action.label || texts.openAction,
            ),
        );
    }

    function remoteAction(action, index) {
        const address = webAddress(action.address);
        if (address === null) {
            return element(
                "div",
                { class: "remote" },
                textElement("p", action.label, { class: "remote-label" }),
                element("p", { class: "address" }, `${texts.addressAlone} `, element("bdi", {}, action.address)),
            );
        }
        const link = element(
            "a",
            {
                class: "primary",
                href: address,
                target: "_blank",
                rel: "noopener noreferrer",
                "aria-describedby": `address-${index}`,
                "data-control": `action-${index}`,
            },
            element("bdi", {}, action.label || address),
            drawing(icons.outside, "icon"),
        );
        // A label may say anything; where the link leads is for the user to see before the click.
        const where = element(
            "p",
            { class: "address", id: `address-${index}` },
            `${texts.addressOfLink} `,
            element("bdi", {}, address),
        );
        return element("div", { class: "remote" }, element("div", { class: "controls" }, link), where);
    }

    function actionView(action, controls, notes) {
        return [
            badge("identity", "calm"),
            heading(action.title, action.label || texts.openAction),
            textElement("p", action.description, { class: "text" }),
            element(
                "div",
                { class: "controls" },
                button(
                    { class: "primary", "data-control": "send", dir: "auto" },
                    () => controls.send(action.event),
                    action.label || texts.sendAction,
                ),
            ),
            notes.sent ? note(texts.sent) : null,
        ];
    }

    // A check of the device may clear what the user can do nothing about here; where an action is waiting for the
    // user, that action is the way out and a second offer would only distract from it.
    function checkAgain(controls, notes) {
        return element(
            "div",
            { class: "check" },
            button(
                { class: "quiet", "data-control": "check", "aria-describedby": "check-text" },
                controls.check,
                drawing(icons.again, "icon"),
                texts.check,
            ),
            element("p", { id: "check-text", class: "check-text" }, texts.checkText),
            notes.checked ? note(texts.checkRequested) : null,
        );
    }

    function note(text) {
        return element("p", { class: "note" }, drawing(icons.done, "icon"), element("span", {}, text));
    }

    function heading(text, otherwise) {
        return element("h1", { id: "heading", tabindex: "-1", dir: "auto" }, text || otherwise);
    }

    function badge(icon, tone) {
        return element("span", { class: "badge", "data-tone": tone }, drawing(icons[icon], "icon"));
    }

    function offersWayOut(alert) {
        return alert.actions.some((action) => action.kind === "local");
    }

    function iconOf(alert) {
        return offersWayOut(alert) ? "identity" : "attention";
    }

    function toneOf(alert) {
        return offersWayOut(alert) ? "calm" : "attention";
    }

    wrenPage.views = { view, backLabel, updateProgress, updateList, putAwayList, entry, lookOf };
}
