// SPDX-License-Identifier: MIT

// How fast the preview is. Prints what it measures; what is slow on a busy machine fails no test.
import assert from "node:assert/strict";
import { test } from "node:test";
import { cursorBehind, drawn, examples, launch, open, selected, serve } from "./place.mjs";

const sorted = (numbers) => [...numbers].sort((a, b) => a - b);
const median = (numbers) => sorted(numbers)[Math.floor(numbers.length / 2)];
const told = (milliseconds) => `${milliseconds.toFixed(0)} ms`;

test("the first paint, from the program's start to the painted picture", async () => {
    const browser = await launch();
    const place = await examples();
    const times = [];
    for (let i = 0; i < 5; i++) {
        const page = await (await browser.newContext({ viewport: { width: 1440, height: 900 } })).newPage();
        const begin = performance.now();
        const server = await serve(place.folder);
        await page.goto(`${server.address}#agenda%2Fdocument.json`);
        await drawn(page);
        await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => setTimeout(resolve))));
        times.push(performance.now() - begin);
        assert.ok(await page.locator(`${selected} canvas`).isVisible());
        await page.close();
        assert.equal(await server.stop(), 0);
    }
    console.log(`first paint: median ${told(median(times))}, each ${times.map(told).join(", ")}`);
    await place.remove();
    await browser.close();
});

test("an edit, from the key to the painted picture", async () => {
    const [browser, place] = [await launch(), await examples()];
    const server = await serve(place.folder);
    for (const name of ["agenda", "clock", "stocks"]) {
        const { page, close } = await open(browser, server.address, `${name}/document.json`);
        await cursorBehind(page, '"version": "1.');
        await page.keyboard.press("ArrowRight");
        await page.evaluate(watchEdits, selected);
        for (let i = 0; i < 30; i++) {
            await page.keyboard.press(i % 2 === 0 ? "Space" : "Backspace");
            await page.waitForFunction((count) => window.edits.length > count, i);
            await page.waitForTimeout(100);
        }
        const edits = await page.evaluate(() => window.edits);
        assert.equal(edits.length, 30);
        console.log(`an edit of ${name}: median ${told(median(edits))}, slowest ${told(Math.max(...edits))}`);
        await close();
    }
    assert.equal(await server.stop(), 0);
    await place.remove();
    await browser.close();
});

/** Keeps how long each edit takes: from the key that changes the text until the frame with its picture is painted. */
function watchEdits(which) {
    window.edits = [];
    let begin = 0;
    window.addEventListener("keydown", () => (begin = performance.now()), { capture: true });
    new MutationObserver(() => {
        const started = begin;
        begin = 0;
        if (started > 0) requestAnimationFrame(() => setTimeout(() => window.edits.push(performance.now() - started)));
    }).observe(document.querySelector(which), { attributeFilter: ["data-change"] });
}
