/**
 * The address of a remote action as a link may carry it. The text comes from a service far away: an address that
 * runs a script, opens a file or starts another program must not become something to click on.
 * @param {string} text
 * @returns {string|null} an absolute http or https address; null for everything else
 */
"use strict";
{
    function webAddress(text) {
        let address;
        try {
            address = new URL(text);
        } catch {
            return null;
        }
        return address.protocol === "https:" || address.protocol === "http:" ? address.href : null;
    }

    wrenPage.address = { webAddress };
}
