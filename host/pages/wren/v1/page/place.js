/**
 * Where the user is, and where that is after the next payload. Pure: places in, places out.
 *
 * @typedef {object} Place
 * @property {"waiting"|"progress"|"clear"|"section"|"list"|"alert"|"action"} page
 * @property {number} [alert] index of the alert, for "alert" and "action"
 * @property {number} [action] index of the alert's action, for "action"
 */
"use strict";
{
    const { hasSection } = wrenPage.payload;

    /**
     * Where a flow begins.
     * @param {Flow|null} flow null before the first payload
     * @returns {Place}
     */
    function home(flow) {
        if (flow === null) {
            return { page: "waiting" };
        }
        if (flow.flow === "enrollment") {
            return { page: "progress" };
        }
        switch (flow.alerts.length) {
            case 0:
                return { page: "clear" };
            case 1:
                return { page: "alert", alert: 0 };
            default:
                return { page: hasSection(flow) ? "section" : "list" };
        }
    }

    /**
     * Where "back" leads.
     * @param {Place} place
     * @param {Flow|null} flow
     * @returns {Place|null} null where there is no way back
     */
    function outer(place, flow) {
        switch (place.page) {
            case "action":
                return { page: "alert", alert: place.alert };
            case "alert":
                return flow.alerts.length > 1 ? { page: "list" } : null;
            case "list":
                return hasSection(flow) ? { page: "section" } : null;
            default:
                return null;
        }
    }

    /**
     * Where the user is once `after` has taken the place of `before`: in the same place if it still exists, else as
     * near to it as there is one.
     * @param {Place} place
     * @param {Flow|null} before
     * @param {Flow} after
     * @returns {{place: Place, kept: boolean, gone: boolean}} `kept`: what was being looked at is still there;
     *     `gone`: it was an alert, and the new payload doesn't report it any more
     */
    function follow(place, before, after) {
        if (before === null || before.flow !== after.flow) {
            return moveTo(home(after));
        }
        switch (place.page) {
            case "progress":
                return keep(place);
            case "section":
            case "list":
                return followOverview(place, after);
            case "alert":
            case "action":
                return followAlert(place, before, after);
            default: {
                const target = home(after);
                return target.page === place.page ? keep(target) : moveTo(target);
            }
        }
    }

    /**
     * Finds an alert of one payload in the next. Payloads carry no ids, so an alert is known by what its action
     * sends, which names one request or enrollment and no other; an alert that sends nothing is known by its texts,
     * or, when they were reworded, by a title that only it has.
     * @param {Alert[]} before
     * @param {number} index of the alert in `before`
     * @param {Alert[]} after
     * @returns {number} its index in `after`, -1 when it is gone
     */
    function findAgain(before, index, after) {
        const wanted = identity(before[index]);
        const position = positions(before, identity, wanted).indexOf(index);
        const same = positions(after, identity, wanted);
        if (same.length > 0) {
            // Of several that read the same one may have gone; which of them it was can't be told, nor does it matter.
            return same[Math.min(position, same.length - 1)];
        }
        if (sends(before[index])) {
            return -1;
        }
        const title = silentTitle(before[index]);
        const candidates = positions(after, silentTitle, title);
        return candidates.length === 1 && positions(before, silentTitle, title).length === 1 ? candidates[0] : -1;
    }

    function followOverview(place, after) {
        if (after.alerts.length < 2) {
            return moveTo(home(after));
        }
        if (place.page === "section" && !hasSection(after)) {
            return moveTo({ page: "list" });
        }
        return keep(place);
    }

    function followAlert(place, before, after) {
        const alert = findAgain(before.alerts, place.alert, after.alerts);
        if (alert < 0) {
            // Whoever was reading one of several is taken to the list, not to the page in front of it.
            const cameFromList = before.alerts.length > 1 && after.alerts.length > 1;
            return { ...moveTo(cameFromList ? { page: "list" } : home(after)), gone: true };
        }
        if (place.page === "alert") {
            return keep({ page: "alert", alert });
        }
        const sent = before.alerts[place.alert].actions[place.action].event;
        const action = after.alerts[alert].actions.findIndex((candidate) => sameEvent(candidate.event, sent));
        return action < 0 ? moveTo({ page: "alert", alert }) : keep({ page: "action", alert, action });
    }

    function keep(place) {
        return { place, kept: true, gone: false };
    }

    function moveTo(place) {
        return { place, kept: false, gone: false };
    }

    function sends(alert) {
        return alert.actions.find((action) => action.kind === "local");
    }

    function identity(alert) {
        const local = sends(alert);
        return JSON.stringify(
            local
                ? [local.event.type, local.event.value]
                : [alert.title, alert.shortText, alert.longText, alert.actions.map((action) => action.address)],
        );
    }

    // The title of an alert that sends nothing; one that does is never taken for another by its title.
    function silentTitle(alert) {
        return sends(alert) ? undefined : alert.title;
    }

    function positions(alerts, keyOf, wanted) {
        return alerts.flatMap((alert, index) => (keyOf(alert) === wanted ? [index] : []));
    }

    function sameEvent(one, other) {
        return one?.type === other.type && one?.value === other.value;
    }

    wrenPage.place = { home, outer, follow, findAgain };
}
