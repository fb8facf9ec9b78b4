/**
 * Messages to the page in the frame named "local", as a host's document sends them.
 */
import { encode } from "./browser.js";

/** A host's document with the page in a frame, for a server. */
export const framingHost =
    "<!doctype html><title>Host</title>" +
    '<button id="outside">Outside</button>' +
    '<iframe name="local" src="/wren/v1/index.html" width="520" height="600"></iframe>';

export const updateFlow = (payload) => ({ kind: "update-flow", detail: encode(payload) });

/** Sends a message to the page from one of the frames and waits until the page has had its turn with it. */
export async function message(sender, data) {
    await sender.evaluate(async (given) => {
        const target = top.frames.local;
        const taken = new Promise((resolve) => {
            target.addEventListener("message", ({ data: seen }) => seen === "taken" && resolve());
        });
        target.postMessage(given, "*");
        // Messages arrive in the order in which they were sent.
        target.postMessage("taken", "*");
        await taken;
    }, data);
}
