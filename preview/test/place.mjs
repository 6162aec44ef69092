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

/** An empty folder. */
export async function emptyFolder() {
    const folder = await mkdtemp(join(tmpdir(), "tavrin-preview-"));
    return { folder, remove: () => rm(folder, { recursive: true }) };
}

/** A folder with the examples' documents, models and pictures. */
export async function examples() {
    const place = await emptyFolder();
    await cp(join(top, "examples"), place.folder, { recursive: true, filter: (path) => !path.endsWith("layout.json") });
    return place;
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

/** Opens the preview; what the page complains about is kept. */
export async function visit(browser, address, document, options = {}) {
    const context = await browser.newContext({ viewport: { width: 1440, height: 900 }, ...options });
    const page = await context.newPage();
    const complaints = [];
    page.on("console", (message) => message.type() === "error" && complaints.push(message.text()));
    page.on("pageerror", (error) => complaints.push(error.message));
    await page.goto(`${address}#${encodeURIComponent(document)}`);
    await page.waitForSelector("body.ready");
    return { page, complaints, close: () => context.close() };
}

/** The same, of a document that can be drawn. */
export async function open(browser, address, document = "agenda/document.json", options = {}) {
    const visited = await visit(browser, address, document, options);
    await drawn(visited.page);
    return visited;
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

/** The least contrast that the elements of a page have with the colour behind them. */
export const leastContrast = (page, which) => page.evaluate(contrastOf, which);

function contrastOf(which) {
    const parts = (color) => color.match(/[\d.]+/g).map(Number);
    const linear = (part) => (part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4);
    const luminance = ([red, green, blue]) =>
        0.2126 * linear(red / 255) + 0.7152 * linear(green / 255) + 0.0722 * linear(blue / 255);
    const behind = (place) => {
        const color = parts(getComputedStyle(place).backgroundColor);
        return color[3] === 0 ? behind(place.parentElement) : color;
    };
    const contrasts = [...document.querySelectorAll(which)].map((place) => {
        const [dark, light] = [parts(getComputedStyle(place).color), behind(place)]
            .map(luminance)
            .sort((a, b) => a - b);
        return (light + 0.05) / (dark + 0.05);
    });
    return Math.min(...contrasts);
}

/** Drops a file on the page. */
export function drop(page, name, text) {
    return page.evaluate(
        ([name, text]) => {
            const carried = new DataTransfer();
            carried.items.add(new File([text], name, { type: "application/json" }));
            for (const type of ["dragover", "drop"])
                window.dispatchEvent(new DragEvent(type, { dataTransfer: carried, bubbles: true, cancelable: true }));
        },
        [name, text],
    );
}
