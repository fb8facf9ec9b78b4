/** Line drawings on a field of 24 by 24, each a list of paths. */
export const icons = Object.freeze({
    attention: Object.freeze([
        "M12 4.2 2.9 19.3a1 1 0 0 0 .9 1.5h16.4a1 1 0 0 0 .9-1.5L12 4.2Z",
        "M12 10v4.6",
        "M12 17.6v.1",
    ]),
    error: Object.freeze(["M12 21a9 9 0 1 0 0-18 9 9 0 0 0 0 18Z", "M12 7.6v5.2", "M12 16.2v.1"]),
    good: Object.freeze([
        "M12 3.2 4.8 6v5.4c0 4.4 3 8 7.2 9.4 4.2-1.4 7.2-5 7.2-9.4V6L12 3.2Z",
        "m8.8 12 2.3 2.3 4.2-4.5",
    ]),
    busy: Object.freeze(["M19.5 12a7.5 7.5 0 1 1-2.2-5.3l2.2 2.1", "M19.5 4.3v4.5H15"]),
    neutral: Object.freeze([
        "M12 3.2 4.8 6v5.4c0 4.4 3 8 7.2 9.4 4.2-1.4 7.2-5 7.2-9.4V6L12 3.2Z",
        "M9 12h6",
    ]),
    paused: Object.freeze(["M12 21a9 9 0 1 0 0-18 9 9 0 0 0 0 18Z", "M10 9v6", "M14 9v6"]),
    close: Object.freeze(["m6.5 6.5 11 11", "m17.5 6.5-11 11"]),
    open: Object.freeze(["m9.5 6 6 6-6 6"]),
    bell: Object.freeze(["M6 16.5V11a6 6 0 0 1 12 0v5.5l1.5 2h-15l1.5-2Z", "M10 21h4"]),
});
