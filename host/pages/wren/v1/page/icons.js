/** Line drawings on a field of 24 by 24, each a list of paths. */
"use strict";

wrenPage.icons = Object.freeze({
    attention: Object.freeze([
        "M12 4.2 2.9 19.3a1 1 0 0 0 .9 1.5h16.4a1 1 0 0 0 .9-1.5L12 4.2Z",
        "M12 10v4.6",
        "M12 17.6v.1",
    ]),
    identity: Object.freeze([
        "M12 3.2 4.8 6v5.4c0 4.4 3 8 7.2 9.4 4.2-1.4 7.2-5 7.2-9.4V6L12 3.2Z",
        "M12 12.2a2.3 2.3 0 1 0 0-4.6 2.3 2.3 0 0 0 0 4.6Z",
        "M8.2 16.6c.6-1.6 2-2.5 3.8-2.5s3.2.9 3.8 2.5",
    ]),
    clear: Object.freeze([
        "M12 3.2 4.8 6v5.4c0 4.4 3 8 7.2 9.4 4.2-1.4 7.2-5 7.2-9.4V6L12 3.2Z",
        "m8.8 12 2.3 2.3 4.2-4.5",
    ]),
    progress: Object.freeze([
        "M5 21V11a7 7 0 0 1 14 0v10",
        "M3.4 21h17.2",
        "M12 11.2v6.2",
        "m9.4 14.8 2.6 2.6 2.6-2.6",
    ]),
    back: Object.freeze(["m14.5 5.5-6.5 6.5 6.5 6.5"]),
    forward: Object.freeze(["m9.5 5.5 6.5 6.5-6.5 6.5"]),
    outside: Object.freeze([
        "M13.5 4.5h6v6",
        "M19.5 4.5 11 13",
        "M10 5.5H6.5a2 2 0 0 0-2 2v10a2 2 0 0 0 2 2h10a2 2 0 0 0 2-2V14",
    ]),
    again: Object.freeze(["M19.5 12a7.5 7.5 0 1 1-2.2-5.3l2.2 2.1", "M19.5 4.3v4.5H15"]),
    done: Object.freeze(["m5 12.6 4.4 4.4L19 7.4"]),
});
