/**
 * What a tray state looks like. Words that are not known look neutral, so that a state is never hidden.
 */
import { icons } from "./icons.js";

const looks = Object.freeze({
    Error: { tone: "error", paths: icons.error },
    Attention: { tone: "attention", paths: icons.attention },
    NonCompliant: { tone: "attention", paths: icons.attention },
    Transition: { tone: "calm", paths: icons.busy },
    Good: { tone: "good", paths: icons.good },
    Trusted: { tone: "good", paths: icons.good },
    Neutral: { tone: "neutral", paths: icons.neutral },
    Paused: { tone: "neutral", paths: icons.paused },
});

/**
 * @param {string} state as the notices spell it
 * @returns {{tone: string, paths: readonly string[]}}
 */
export function lookOf(state) {
    return Object.hasOwn(looks, state) ? looks[state] : { tone: "neutral", paths: icons.neutral };
}
