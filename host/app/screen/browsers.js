/**
 * Browser popups: windows with a frame. A login page stands in a frame that may do nothing but send its form; the
 * module's own page in one that may talk to this page. Where a page can't stand in a frame, there is a link, and a
 * field for the cookie that it sets.
 *
 * @typedef {import("../core/protocol.js").Popup} Popup
 */
import { button, element, field, icon, setText } from "../core/dom.js";
import { icons } from "../core/icons.js";
import { keepChildren } from "../core/keyed.js";
import { webAddress } from "./address.js";
import { LocalPage } from "./local-page.js";

const loadFailure = "The page could not be loaded.";

/**
 * @param {HTMLElement} layer
 * @param {import("../core/protocol.js").Ask} ask
 */
export function useBrowsers(layer, ask) {
    /** What each open popup shows, by its element. */
    const open = new Map();
    let returnTo = null;

    function make(popup) {
        const title = element("h3", { class: "browser-title", id: `title-${popup.id}`, dir: "auto" });
        const made = element(
            "div",
            { class: "browser", role: "dialog", "aria-labelledby": title.id, "data-popup": popup.id, tabindex: "-1" },
            element(
                "div",
                { class: "browser-head" },
                title,
                button({ class: "plain", "aria-label": "Close" }, () => ask("close", { popup: popup.id }), icon(icons.close)),
            ),
            element("p", { class: "browser-address" }),
            element("div", { class: "browser-body" }),
            element(
                "div",
                { class: "browser-foot" },
                button(
                    { class: "quiet small" },
                    () => ask("browse_error", { popup: popup.id, error: loadFailure }),
                    "It doesn't load",
                ),
            ),
        );
        made.addEventListener("keydown", (event) => {
            if (event.key === "Escape" && !event.repeat) {
                event.preventDefault();
                ask("close", { popup: popup.id });
            }
        });
        open.set(made, { page: "", raised: 0, local: null });
        return made;
    }

    function update(made, popup) {
        const { browser } = popup;
        const shown = open.get(made);
        setText(made.querySelector(".browser-title"), popup.title);
        setText(made.querySelector(".browser-address"), browser.start_url);
        const page = `${browser.number} ${browser.address}`;
        if (page !== shown.page) {
            shown.page = page;
            shown.local?.end();
            shown.local = load(made, popup);
        }
        shown.local?.tell(browser.detail, browser.detail_number);
        if (popup.number !== shown.raised) {
            shown.raised = popup.number;
            bringToFront(made);
        }
    }

    function load(made, { id, title, browser }) {
        const body = made.querySelector(".browser-body");
        const isLogin = browser.operation === "browse_for_cookie" || browser.operation === "browse";
        made.dataset.shows = browser.address === "" ? "form" : isLogin ? "login" : "local";
        if (browser.address === "") {
            body.replaceChildren(...byHand(id, browser));
            return null;
        }
        // Nothing but its form: no scripts, no popups, no way up to this page. It keeps its origin, which the host asks
        // for when the form is sent.
        const sandbox = isLogin ? "allow-forms allow-same-origin" : null;
        const frame = element("iframe", { class: "browser-frame", title, sandbox });
        const local = isLogin ? null : new LocalPage(frame, (type, value) => ask("page_event", { popup: id, type, value }));
        frame.src = browser.address;
        body.replaceChildren(frame);
        return local;
    }

    function byHand(id, { start_url: address, operation }) {
        const link = webAddress(address);
        const way =
            link === null
                ? element("p", { class: "browser-link" }, address)
                : element("a", { class: "browser-link", href: link, target: "_blank", rel: "noopener noreferrer" }, address);
        return operation === "browse_for_cookie"
            ? [element("p", {}, "This page can't be shown here. Open it in a window of its own, and bring back its cookie."), way, cookieForm(id)]
            : [element("p", {}, "This page can't be shown here. Open it in a window of its own."), way];
    }

    function cookieForm(id) {
        const cookie = element("input", { type: "text", autocomplete: "off", spellcheck: "false" });
        const form = element(
            "form",
            { class: "by-hand" },
            field("Value of the cookie", cookie),
            element("button", { class: "action", type: "submit" }, "Send the cookie"),
        );
        form.addEventListener("submit", (event) => {
            event.preventDefault();
            ask("cookie", { popup: id, value: cookie.value });
        });
        return form;
    }

    function bringToFront(made) {
        const within = document.activeElement;
        if (!layer.contains(within)) {
            returnTo = within;
        }
        front = made;
    }
    let front = null;

    return {
        /** @param {Popup[]} popups those that are browsers, the one in front last */
        show(popups) {
            const hadFocus = layer.contains(document.activeElement);
            front = null;
            keepChildren(layer, [...popups].sort((one, other) => (one.id < other.id ? -1 : 1)), {
                key: ({ id }) => id,
                make,
                update,
            });
            for (const [made, { local }] of open) {
                if (!made.isConnected) {
                    local?.end();
                    open.delete(made);
                }
                made.style.setProperty("z-index", String(popups.findIndex(({ id }) => id === made.dataset.popup) + 1));
            }
            layer.hidden = popups.length === 0;
            if (front !== null) {
                front.focus({ preventScroll: true });
                front.scrollIntoView({ block: "nearest" });
            } else if (hadFocus && !layer.contains(document.activeElement)) {
                const next = returnTo?.isConnected && !returnTo.disabled ? returnTo : document.querySelector("#screen-heading");
                next.focus({ preventScroll: true });
            }
        },
    };
}
