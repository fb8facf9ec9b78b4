/**
 * The bar between the user's screen and the inspector: dragged, or moved by the arrow keys.
 */
const least = 28;
const most = 68;
const usual = 42;
const step = 2;

/**
 * @param {HTMLElement} bar
 * @param {HTMLElement} around what both sides stand in; its property --split becomes the left side's share
 */
export function useSplitter(bar, around) {
    let share = usual;

    function moveTo(wanted) {
        share = Math.min(most, Math.max(least, wanted));
        around.style.setProperty("--split", `${share}%`);
        bar.setAttribute("aria-valuenow", String(Math.round(share)));
    }

    bar.setAttribute("aria-valuemin", String(least));
    bar.setAttribute("aria-valuemax", String(most));
    moveTo(usual);

    bar.addEventListener("pointerdown", (event) => {
        bar.setPointerCapture(event.pointerId);
        event.preventDefault();
        bar.focus();
    });
    bar.addEventListener("pointermove", (event) => {
        if (bar.hasPointerCapture(event.pointerId)) {
            const box = around.getBoundingClientRect();
            moveTo((100 * (event.clientX - box.left)) / box.width);
        }
    });
    bar.addEventListener("dblclick", () => moveTo(usual));
    bar.addEventListener("keydown", (event) => {
        const target = { ArrowLeft: share - step, ArrowRight: share + step, Home: least, End: most }[event.key];
        if (target !== undefined) {
            event.preventDefault();
            moveTo(target);
        }
    });
}
