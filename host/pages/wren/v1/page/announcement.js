/**
 * What a screen reader is told when a payload has changed the page under the user. Pure.
 */
"use strict";
{
    const { texts } = wrenPage;

    /**
     * @param {Flow|null} before
     * @param {Flow} after
     * @param {boolean} gone the alert that was being read is no longer there
     * @returns {string} empty when there is nothing worth interrupting for
     */
    function announcement(before, after, gone) {
        if (after.flow === "enrollment") {
            const words = `${after.title || texts.progress} ${texts.percent(after.percent)}`;
            return worthTelling(before, after) ? words : "";
        }
        return [gone ? texts.alertGone : "", alertSummary(after.alerts)].filter(Boolean).join(" ");
    }

    // A percentage that is read out at each step drowns everything else; each ten is enough.
    function worthTelling(before, after) {
        return (
            before?.flow !== "enrollment" ||
            before.title !== after.title ||
            Math.floor(before.percent / 10) !== Math.floor(after.percent / 10)
        );
    }

    function alertSummary(alerts) {
        switch (alerts.length) {
            case 0:
                return texts.noAlerts;
            case 1:
                return texts.oneAlert(alerts[0].title || texts.alert);
            default:
                return texts.manyAlerts(alerts.length);
        }
    }

    wrenPage.announcement = announcement;
}
