/**
 * Pictures of what the tests see, for eyes. They take longer than the tests do, so they are taken for those alone who name
 * a folder in WREN_SCREENSHOTS.
 */
import { join } from "node:path";

const folder = process.env.WREN_SCREENSHOTS;

/** @param {import("playwright-core").Page} page @param {string} name of the file, without its ending @param {object} [options] */
export async function picture(page, name, options = {}) {
    if (folder) {
        await page.screenshot({ path: join(folder, `${name}.png`), animations: "disabled", ...options });
    }
}
