/**
 * Room for the browser popups: they stand below the main window, whose buttons are needed while a login is open.
 */

/** No more of the screen than this share is kept free, however tall the tile is. */
const mostShare = 0.45;

/**
 * @param {HTMLElement} screen its property --below tells where the room begins
 * @param {HTMLElement} mainWindow
 */
export function keepTileFree(screen, mainWindow) {
    const measure = () => {
        const bottom = mainWindow.offsetTop + mainWindow.offsetHeight;
        const below = Math.min(bottom, mostShare * screen.offsetHeight);
        screen.style.setProperty("--below", `${Math.round(below)}px`);
    };
    const observer = new ResizeObserver(measure);
    observer.observe(mainWindow);
    observer.observe(screen);
}
