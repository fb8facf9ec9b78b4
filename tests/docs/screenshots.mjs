// The pictures of the documentation, taken of the real program in a real browser: scripts/refresh-screenshots.
import { mkdtemp, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";

import { launchOptions } from "../page/support/browser.js";
import { RealHost } from "../page/support/real-host.js";

const { chromium } = await import(new URL("../page/node_modules/playwright-core/index.mjs", import.meta.url));
const folder = fileURLToPath(new URL("../../docs/images/", import.meta.url));

/** What stands in each picture, and the way there. */
const pictures = {
    enrolling: {
        scenario: { delays: { registration: 60000 } },
        async walk(user) {
            await user.press("Enroll");
            await user.login.getByLabel("User name").fill("robin");
            await user.tab("Machine");
            await user.page.getByText("EnrollAuthenticating").first().waitFor();
        },
    },
    alerts: {
        scenario: {
            device: {
                enrolled: true,
                posture: "unreachable",
                dataplane_alerts: [
                    {
                        category: "policy_error",
                        code: 403,
                        title: "Access to wiki.example.test was refused",
                        short_message: "A policy of your organisation refuses this destination.",
                        url: "https://help.example.test/policy",
                        url_label: "Read the policy",
                        destinations: [{ host: "wiki.example.test", port: 443, proto: "tcp" }],
                    },
                ],
            },
        },
        async walk(user) {
            await user.press("Details");
            await user.local.getByText("See Details").waitFor();
        },
    },
};

const host = new RealHost();
host.browser = await chromium.launch(launchOptions);
host.folder = await mkdtemp(join(tmpdir(), "wren-pictures-"));
for (const [name, { scenario, walk }] of Object.entries(pictures)) {
    host.prepare();
    const user = await host.start(scenario);
    await walk(user);
    await user.page.screenshot({ path: join(folder, `${name}.png`), animations: "disabled" });
    await host.end();
}
await host.browser.close();
await rm(host.folder, { recursive: true });
