/**
 * Serves the pages' folder on the loopback, under a content security policy at least as strict as any host's.
 */
import { readFile } from "node:fs/promises";
import { createServer } from "node:http";
import { dirname, extname, join, normalize } from "node:path";
import { fileURLToPath } from "node:url";

export const pages = join(dirname(fileURLToPath(import.meta.url)), "../../../host/pages");

const types = { ".html": "text/html", ".css": "text/css", ".js": "text/javascript", ".svg": "image/svg+xml" };

const policy = [
    "default-src 'none'",
    "script-src 'self'",
    "style-src 'self'",
    "img-src 'self'",
    "frame-src *",
    "base-uri 'none'",
    "form-action 'none'",
    // With this on, text that is made markup or code anywhere in the page throws.
    "require-trusted-types-for 'script'",
    "trusted-types 'none'",
].join("; ");

/**
 * @param {Record<string, string>} [extra] further documents by path, as HTML
 * @returns {Promise<{origin: string, requests: string[], close: () => Promise<void>}>}
 */
export async function serve(extra = {}) {
    const requests = [];
    const server = createServer(async (request, response) => {
        const { pathname } = new URL(request.url, "http://localhost");
        requests.push(pathname);
        try {
            const body = extra[pathname] ?? (await readFile(join(pages, normalize(pathname))));
            const type = types[extname(pathname)] ?? "text/html";
            response.writeHead(200, {
                "Content-Type": `${type}; charset=utf-8`,
                "Content-Security-Policy": policy,
                "X-Content-Type-Options": "nosniff",
                "Cache-Control": "max-age=3600", // a browser loads the page for hundreds of tests
            });
            response.end(body);
        } catch {
            response.writeHead(404).end();
        }
    });
    await new Promise((resolve) => server.listen(0, "127.0.0.1", resolve));
    return {
        origin: `http://127.0.0.1:${server.address().port}`,
        requests,
        close: () => {
            server.closeAllConnections?.();
            return new Promise((resolve) => server.close(resolve));
        },
    };
}
