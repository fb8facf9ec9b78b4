/**
 * Tabs: one panel of several. Arrow keys move between the tabs, as screen readers say they do.
 */

/**
 * @param {HTMLElement} tablist whose tabs stand in it and name their panels by `aria-controls`
 * @param {(panelId: string) => void} [selected] called after another panel has come up
 * @returns {{select: (panelId: string) => void}}
 */
export function useTabs(tablist, selected = () => {}) {
    const tabs = [...tablist.querySelectorAll("[role=tab]")];

    function select(tab) {
        for (const one of tabs) {
            const isChosen = one === tab;
            one.setAttribute("aria-selected", String(isChosen));
            one.tabIndex = isChosen ? 0 : -1;
            panelOf(one).hidden = !isChosen;
        }
        selected(tab.getAttribute("aria-controls"));
    }

    tablist.addEventListener("click", ({ target }) => {
        const tab = target.closest("[role=tab]");
        if (tab !== null) {
            select(tab);
        }
    });
    tablist.addEventListener("keydown", (event) => {
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        const edge = { Home: 0, End: tabs.length - 1 }[event.key];
        const from = tabs.indexOf(event.target);
        const to = edge ?? (step === undefined ? undefined : (from + step + tabs.length) % tabs.length);
        if (to !== undefined && from >= 0) {
            event.preventDefault();
            select(tabs[to]);
            tabs[to].focus();
        }
    });
    for (const tab of tabs) {
        tab.type = "button";
    }
    select(tabs[0]);
    return { select: (panelId) => select(tabs.find((tab) => tab.getAttribute("aria-controls") === panelId)) };
}

function panelOf(tab) {
    return document.getElementById(tab.getAttribute("aria-controls"));
}
