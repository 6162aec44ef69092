// SPDX-License-Identifier: MIT

// Where the tests work: a copy of the examples, the program that shows it, a browser that opens it.
import { spawn } from "node:child_process";
import { createHash } from "node:crypto";
import { cp, mkdtemp, rm } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { chromium } from "playwright-core";

const top = new URL("../..", import.meta.url).pathname;
const program = process.env.TAVRIN_PROGRAM ?? join(top, "build/release/tavrin");
const browserPath = process.env.CHROMIUM ?? "/usr/bin/chromium";
const quietly = [
    "--headless",
    "--no-sandbox",
    "--disable-gpu",
    "--disable-quic",
    "--no-first-run",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
];

export const launch = () => chromium.launch({ executablePath: browserPath, args: quietly });

/** A folder with the examples' documents, models and pictures. */
export async function examples() {
    const folder = await mkdtemp(join(tmpdir(), "tavrin-preview-"));
    await cp(join(top, "examples"), folder, { recursive: true, filter: (path) => !path.endsWith("layout.json") });
    return { folder, remove: () => rm(folder, { recursive: true }) };
}

/** Starts the program; resolves with its address. */
export function serve(folder, ...more) {
    const child = spawn(program, ["preview", folder, "--offline", ...more], { stdio: ["ignore", "pipe", "inherit"] });
    const ended = new Promise((resolve) => child.once("exit", (code, signal) => resolve(signal ?? code)));
    const stop = (signal = "SIGTERM") => {
        child.kill(signal);
        return ended;
    };
    return new Promise((resolve, reject) => {
        let text = "";
        child.stdout.on("data", (bytes) => {
            text += bytes;
            const address = /http:\/\/127\.0\.0\.1:\d+\/[0-9a-f]{32}\//.exec(text);
            if (address) resolve({ address: address[0], stop });
        });
        child.once("error", reject);
        void ended.then((code) => reject(new Error(`the program ended with ${code}`)));
    });
}

/** Opens the preview of a document; what the page complains about is kept. */
export async function open(browser, address, document = "agenda/document.json", options = {}) {
    const context = await browser.newContext({ viewport: { width: 1440, height: 900 }, ...options });
    const page = await context.newPage();
    const complaints = [];
    page.on("console", (message) => message.type() === "error" && complaints.push(message.text()));
    page.on("pageerror", (error) => complaints.push(error.message));
    await page.goto(`${address}#${encodeURIComponent(document)}`);
    await drawn(page);
    return { page, complaints, close: () => context.close() };
}

export const selected = "[role=option][aria-selected=true]";

/** Waits until the selected picture shows the latest change; one that comes after `last`, where that is given. */
export async function drawn(page, last = -1) {
    await page.waitForSelector("body.ready");
    await page.waitForFunction(
        ([which, old]) => {
            const latest = document.querySelector("#stage").dataset.change;
            return Number(latest) > old && document.querySelector(which)?.dataset.change === latest;
        },
        [selected, last],
    );
}

/** What a picture shows, in a few letters that can be compared. */
export async function picture(page, which = selected) {
    const data = await page.$eval(`${which} canvas`, (canvas) => canvas.toDataURL());
    return createHash("sha256").update(data).digest("hex").slice(0, 16);
}

/** Does something and waits until the selected picture has been drawn anew. */
export async function redrawn(page, act) {
    await drawn(page);
    const before = Number(await page.getAttribute("#stage", "data-change"));
    await act();
    await drawn(page, before);
}

/** Puts the cursor behind the first place in the document where a text stands. */
export async function cursorBehind(page, text) {
    await page.click("#document-panel .cm-content");
    await page.keyboard.press("Control+Home");
    await page.keyboard.press("Control+f");
    await page.keyboard.type(text);
    await page.keyboard.press("Enter");
    await page.keyboard.press("Escape");
    await page.keyboard.press("ArrowRight");
}
