// SPDX-License-Identifier: MIT

// The preview in a real browser, on a copy of the examples: node --test preview/test
import assert from "node:assert/strict";
import { readFile, rm, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { after, before, test } from "node:test";
import {
    cursorBehind,
    drawn,
    drop,
    examples,
    launch,
    leastContrast,
    open,
    picture,
    redrawn,
    selected,
    serve,
} from "./place.mjs";

let browser, place, server;

before(async () => {
    place = await examples();
    [browser, server] = await Promise.all([launch(), serve(place.folder)]);
});
after(async () => {
    await browser?.close();
    assert.equal(await server?.stop(), 0, "the program ends cleanly");
    await place?.remove();
});

/** Opens a document, lets a test work on it, and makes sure that the page had nothing to complain about. */
async function on(document, work, options) {
    const { page, complaints, close } = await open(browser, server.address, document, options);
    await work(page);
    assert.deepEqual(
        complaints.filter((each) => !/status of 409/.test(each)),
        [],
    );
    await close();
}

test("shows every family of the screen, light and dark", () =>
    on("weather/document.json", async (page) => {
        assert.equal(await page.locator("[role=option]").count(), 12);
        await page.check("input[value=dark]", { force: true });
        assert.equal(await page.locator("[role=option]").count(), 6);
        await page.selectOption("#screen", "1024x1366");
        const names = await page.$$eval("[role=option]", (tiles) => tiles.map((tile) => tile.dataset.family));
        assert.deepEqual(names, ["systemMedium", "systemSmall", "systemLarge", "systemExtraLarge"]);
        await drawn(page);
    }));

test("draws an edit", () =>
    on("agenda/document.json", async (page) => {
        const first = await picture(page);
        await cursorBehind(page, '"fontSize": 5');
        await redrawn(page, () => page.keyboard.press("Delete"));
        assert.notEqual(await picture(page), first);
        await redrawn(page, () => page.keyboard.press("Control+z"));
        assert.equal(await picture(page), first);
    }));

test("draws an edit of the model", () =>
    on("agenda/document.json", async (page) => {
        const first = await picture(page);
        await page.click("#model-tab");
        await page.click("#model-panel .cm-content");
        await redrawn(page, async () => {
            await page.keyboard.press("Control+a");
            await page.keyboard.insertText(
                (await readFile(join(place.folder, "agenda/model.json"), "utf8")).replace("Market", "Bazaar"),
            );
        });
        assert.notEqual(await picture(page), first);
    }));

test("shows an error in place, and leads to it", () =>
    on("agenda/document.json", async (page) => {
        const first = await picture(page);
        await cursorBehind(page, '"type": "hstack"');
        await page.keyboard.press("ArrowLeft");
        await redrawn(page, () => page.keyboard.type("s"));
        const squiggle = page.locator("#document-panel .cm-lintRange-error", { hasText: /^"hstacks"$/ });
        await squiggle.waitFor(); // the editor draws it a moment after the problem is told
        const problem = page.locator(".problem.error");
        assert.match(await problem.textContent(), /"hstacks" is not a node type.*nodes\.main\.type.*document 5:/s);
        assert.equal(await picture(page), first, "the last picture stays");
        await page.keyboard.press("Control+Home");
        await page.keyboard.press("F8");
        assert.match(await page.locator("#document-panel .cm-activeLine").textContent(), /hstacks/);
        await redrawn(page, () => page.keyboard.press("Control+z"));
        await problem.waitFor({ state: "detached" }); // what is told of a document comes after its picture
    }));

test("shows an error of the model in the model", () =>
    on("agenda/document.json", async (page) => {
        await page.click("#model-tab");
        await page.click("#model-panel .cm-content");
        await page.keyboard.press("Control+Home");
        await redrawn(page, () => page.keyboard.type("x"));
        await page.waitForSelector("#model-panel .cm-lintRange-error");
        assert.match(await page.locator(".problem .where").textContent(), /^model 1:/);
    }));

test("warns of what is meant otherwise, and mends it", () =>
    on("agenda/document.json", async (page) => {
        const first = await picture(page);
        await cursorBehind(page, '"fontSiz');
        await page.keyboard.press("Backspace");
        const problem = page.locator(".problem.warning", { hasText: "fontSie" });
        assert.match(await problem.textContent(), /did you mean "fontSize"/);
        await problem.click();
        await page.hover(".cm-lintRange-warning");
        await redrawn(page, () => page.click(".cm-diagnosticAction"));
        assert.equal(await picture(page), first);
    }));

test("completes what the schema knows", () =>
    on("agenda/document.json", async (page) => {
        await cursorBehind(page, '{"type": "spacer"');
        await page.keyboard.type(', "mod');
        await page.locator(".cm-completionLabel", { hasText: "modifiers" }).waitFor();
        await page.waitForTimeout(200); // a list that has just opened does not take keys yet
        await page.keyboard.press("Enter");
        assert.match(
            await page.locator("#document-panel .cm-activeLine").textContent(),
            /"spacer", "modifiers": \[\]\},$/,
        );
        await cursorBehind(page, '"alignment": "');
        await page.keyboard.press("Control+Space");
        const labels = page.locator(".cm-completionLabel");
        await labels.first().waitFor();
        assert.ok((await labels.allTextContents()).includes("bottom"));
    }));

test("completes the model's names in an expression", () =>
    on("agenda/document.json", async (page) => {
        await cursorBehind(page, "{{initServerParam.");
        await page.keyboard.press("Control+Space");
        await page.waitForSelector(".cm-tooltip-autocomplete");
        const labels = await page.$$eval(".cm-completionLabel", (all) => all.map((each) => each.textContent));
        assert.ok(labels.includes("weekday") && labels.includes("events[0]"), labels.join());
    }));

test("draws any moment, and lets the clock run", () =>
    on("clock/document.json", async (page) => {
        const first = await picture(page);
        await page.focus("#time-slider");
        await redrawn(page, () => page.keyboard.press("PageUp"));
        const later = await picture(page);
        assert.notEqual(later, first);
        await redrawn(page, async () => {
            await page.fill("#time-zone", "Asia/Kolkata");
            await page.keyboard.press("Tab");
        });
        assert.match(await page.inputValue("#time-field"), /^\d{4}-\d\d-\d\dT\d\d:\d\d/);
        await page.fill("#time-zone", "Nowhere");
        await page.keyboard.press("Tab");
        assert.equal(await page.getAttribute("#time-zone", "aria-invalid"), "true");
        await redrawn(page, () => page.click("#now"));
        assert.equal(await page.inputValue("#time-zone"), "Asia/Kolkata");
        assert.equal(await page.getAttribute("#time-zone", "aria-invalid"), "false");
        await page.selectOption("#time-speed", "3600");
        await page.click("#play");
        const running = await picture(page);
        await page.waitForTimeout(500);
        assert.notEqual(await picture(page), running);
        await page.click("#play");
        assert.equal(await page.getAttribute("#play", "aria-pressed"), "false");
    }));

test("draws a timer once for each second that it shows, however smoothly the clock runs", () =>
    on("countdown/document.json", async (page) => {
        const moments = new Set();
        let drawings = 0;
        page.on("request", (request) => {
            if (!request.url().endsWith("api/render")) return;
            const { family, appearance, date } = request.postDataJSON();
            if (family !== "systemMedium" || appearance !== "light") return;
            drawings++;
            moments.add(Math.floor(date));
        });
        const begin = Date.now();
        await page.click("#play");
        await page.waitForTimeout(2500);
        await page.click("#play");
        await drawn(page);
        assert.ok(drawings >= 2, `${drawings} drawings`);
        assert.ok(drawings <= (Date.now() - begin) / 1000 + 1, `${drawings} drawings`);
        assert.equal(moments.size, drawings);
    }));

test("draws nothing while the clock runs where it changes nothing", () =>
    on("weather/document.json", async (page) => {
        await page.waitForTimeout(1000); // for the pictures that are not selected
        let drawings = 0;
        page.on("request", (request) => (drawings += request.url().endsWith("api/render")));
        await page.click("#play");
        await page.waitForTimeout(500);
        await page.click("#play");
        await drawn(page);
        assert.equal(drawings, 0);
    }));

test("highlights the view that the tree looks at, and finds the view under the pointer", () =>
    on("agenda/document.json", async (page) => {
        const row = page.locator("[role=treeitem]", { hasText: "“SATURDAY”" });
        await row.hover();
        const highlight = page.locator(`${selected} .highlight`);
        const [mark, canvas] = [await highlight.boundingBox(), await page.locator(`${selected} canvas`).boundingBox()];
        assert.ok(Math.abs(mark.x - canvas.x - 16) < 1 && Math.abs(mark.y - canvas.y - 16) < 1, JSON.stringify(mark));
        await page.mouse.click(canvas.x + 30, canvas.y + 22);
        const chosen = page.locator("[role=treeitem][aria-selected=true]");
        assert.match(await chosen.textContent(), /SATURDAY/);
        await chosen.focus();
        const details = await page.locator("#details").textContent();
        assert.match(details, /Text.*size.*fontWeight.*nodes\.main/s);
        assert.match(details, /passes its proposal on.*It answers.*It lies at/s);
        const place = await page.$$eval(".marked-place", (marks) => marks.map((mark) => mark.textContent).join(""));
        assert.match(place, /initServerParam\.weekday/);
        await page.keyboard.press("Enter");
        assert.match(await page.locator("#document-panel .cm-activeLine").textContent(), /^\s*\{$/);
        assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-label")), "Document");
    }));

test("works without a mouse", () =>
    on("agenda/document.json", async (page) => {
        const focused = (read) => page.evaluate(`(${read})(document.activeElement)`);
        const goTo = async (region) => {
            for (let i = 0; i < 8; i++) {
                await page.keyboard.press("F6");
                if ((await focused(`(e) => e.closest("[data-region]")?.getAttribute("aria-label")`)) === region) return;
            }
            assert.fail(`F6 never comes to ${region}`);
        };
        await goTo("Widget in every family");
        await page.keyboard.press("ArrowRight");
        assert.equal(await focused("(e) => e.dataset.family"), "systemSmall");
        assert.equal(await page.getAttribute(selected, "data-family"), "systemSmall");
        await drawn(page);
        await goTo("Inspector");
        await page.keyboard.press("ArrowDown");
        await page.keyboard.press("ArrowDown");
        assert.equal(await focused(`(e) => e.getAttribute("aria-level")`), "3");
        await page.keyboard.press("ArrowLeft");
        assert.equal(await focused(`(e) => e.getAttribute("aria-expanded")`), "false");
        assert.ok(await page.locator(`${selected} .highlight`).isVisible());
        await page.keyboard.press("Alt+2");
        assert.equal(await focused(`(e) => e.getAttribute("aria-label")`), "Model");
        await page.keyboard.press("F1");
        assert.ok(await page.locator("#help").isVisible());
        await page.keyboard.press("Escape");
        await page.focus("input[name=appearance]:checked");
        await page.keyboard.press("ArrowLeft");
        assert.equal(await page.locator("[role=option]").count(), 6);
        assert.equal(await page.getAttribute(selected, "data-appearance"), "dark");
    }));

test("shows what another program writes, and asks before it drops what was typed", () =>
    on("rings/document.json", async (page) => {
        const path = join(place.folder, "rings/document.json");
        const text = await readFile(path, "utf8");
        const first = await picture(page);
        await redrawn(page, () => writeFile(path, text.replace(/"spacing": \d+/, '"spacing": 40')));
        assert.notEqual(await picture(page), first);
        await page.click("#document-panel .cm-content");
        await page.keyboard.press("Control+Home");
        await page.keyboard.type(" ");
        await writeFile(path, text);
        await page.waitForSelector("#changed-on-disk:not([hidden])");
        await redrawn(page, () => page.click("#reload"));
        assert.equal(await picture(page), first);
    }));

test("saves, and not over a change of others", () =>
    on("stocks/document.json", async (page) => {
        const path = join(place.folder, "stocks/document.json");
        const text = await readFile(path, "utf8");
        await page.click("#document-panel .cm-content");
        await page.keyboard.press("Control+End");
        await page.keyboard.type(" ");
        await page.keyboard.press("Control+s");
        await page.waitForSelector("#save:disabled");
        assert.equal(await readFile(path, "utf8"), `${text} `);
        assert.equal(await page.locator("#changed-on-disk").isVisible(), false);
        await page.keyboard.type(" ");
        await writeFile(path, text);
        await page.waitForSelector("#changed-on-disk:not([hidden])");
        await page.keyboard.press("Control+s");
        await page.waitForFunction(() =>
            document.querySelector("#announcement").textContent.includes("has changed on disk"),
        );
        assert.equal(await readFile(path, "utf8"), text);
    }));

test("shows what is not UTF-8, and never saves it", async () => {
    const path = join(place.folder, "latin1.json");
    const document = `{"version": "1.0", "nodes": {"main": {"type": "text", "content": "caf\u00e9"}}}`;
    await writeFile(path, document, "latin1");
    await on("latin1.json", async (page) => {
        const banner = page.locator("#not-utf8");
        assert.match(await banner.textContent(), /latin1\.json is not UTF-8.*nothing is\s+saved/s);
        assert.ok(await banner.isVisible());
        await page.click("#document-panel .cm-content");
        await page.keyboard.press("Control+End");
        await page.keyboard.type(" ");
        await page.keyboard.press("Control+s");
        await page.waitForFunction(() => document.querySelector("#announcement").textContent.includes("is not UTF-8"));
        assert.equal(await readFile(path, "latin1"), document);
        await writeFile(path, document);
        await page.waitForSelector("#changed-on-disk:not([hidden])");
        await redrawn(page, () => page.click("#reload"));
        assert.equal(await banner.isVisible(), false);
    });
    await rm(path);
});

test("leaves the ends of lines as they are", async () => {
    const path = join(place.folder, "lines.json");
    const document = `{"version": "1.0",\r\n"nodes": {"main": {"type": "text", "content": "Hello"}}}\r\n`;
    await writeFile(path, document);
    await on("lines.json", async (page) => {
        assert.ok(await page.isDisabled("#save"), "nothing has changed");
        await page.click("#document-panel .cm-content");
        await page.keyboard.press("Control+Home");
        await page.keyboard.type(" ");
        await page.keyboard.press("Control+s");
        await page.waitForSelector("#save:disabled");
        assert.equal(await readFile(path, "utf8"), ` ${document}`);
    });
    await rm(path);
});

test("takes a dropped model", () =>
    on("agenda/document.json", async (page) => {
        const model = (await readFile(join(place.folder, "agenda/model.json"), "utf8")).replace("SATURDAY", "TODAY");
        const first = await picture(page);
        await redrawn(page, () => drop(page, "today.json", model));
        assert.notEqual(await picture(page), first);
        assert.match(await page.locator("#model-tab").textContent(), /today\.json \(dropped\)/);
    }));

test("shares one file that stands alone", () =>
    on("photo/document.json", async (page) => {
        await page.locator("[role=treeitem]").first().waitFor();
        const [download] = await Promise.all([page.waitForEvent("download"), page.click("#share")]);
        const path = join(place.folder, "shared.html");
        await download.saveAs(path);
        const context = await browser.newContext({ offline: true });
        const shared = await context.newPage();
        const asked = [];
        shared.on("request", (request) => asked.push(request.url().slice(0, 5)));
        await shared.goto(`file://${path}`);
        const sizes = await shared.$$eval("img", (all) => all.map((image) => image.naturalWidth));
        assert.ok(sizes.length === 6 && sizes.every((width) => width > 0), sizes.join());
        assert.match(await shared.locator("body").textContent(), /photo\/document.*"nodes".*View tree/s);
        assert.ok(
            asked.every((address) => address === "file:" || address === "data:"),
            asked.join(),
        );
        for (const colorScheme of ["light", "dark"]) {
            await shared.emulateMedia({ colorScheme });
            assert.ok((await leastContrast(shared, "h1, p, figcaption, summary, pre, b, small")) >= 4.5, colorScheme);
        }
        await context.close();
        const text = await readFile(path, "utf8");
        assert.ok(!text.includes(new URL(server.address).pathname.slice(1, -1)), "it does not tell the secret");
    }));

test("shares lock screen widgets in their shapes", () =>
    on("walk/document.json", async (page) => {
        const [download] = await Promise.all([page.waitForEvent("download"), page.click("#share")]);
        const shared = await page.context().newPage();
        await shared.setContent(await readFile(await download.path(), "utf8"));
        for (const looked of [page, shared]) {
            const radii = await looked.$$eval("#stage .tile:not(.not-meant) .widget, .pictures img", (all) =>
                all.map((shown) => getComputedStyle(shown).borderRadius),
            );
            assert.deepEqual([...new Set(radii)], ["50%"]);
        }
        await shared.close();
    }));

test("needs no wide screen, and moves nothing for those who ask for that", () =>
    on(
        "agenda/document.json",
        async (page) => {
            const overflow = await page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
            assert.ok(overflow <= 0, `${overflow} pixels too wide`);
            assert.equal(await page.$eval("#announcement", (e) => getComputedStyle(e).transitionDuration), "0s");
        },
        { viewport: { width: 390, height: 800 }, reducedMotion: "reduce" },
    ));

/** A document whose picture takes longer than anyone waits: the same gradient, turned, 65,536 times. */
function endless() {
    const nodes = { leaf: { type: "color", gradient: true, start: "top", end: "bottom", value: "#5856D6-#FF2D55" } };
    nodes.leaf.modifiers = [{ type: "rotationEffect", angle: 10 }];
    const name = (level) => (level === 0 ? "main" : level === 16 ? "leaf" : `level${level}`);
    for (let level = 0; level < 16; level++)
        nodes[name(level)] = { type: "zstack", children: Array(2).fill({ type: "node", name: name(level + 1) }) };
    return JSON.stringify({ version: "1.0", nodes });
}

const drawing = (document) => {
    const room = { family: "systemLarge", width: 364, height: 382, scale: 3 };
    return { document, ...room, appearance: "light", date: 0, timeZone: "UTC" };
};
const ask = (address, path, body) =>
    fetch(address + path, {
        method: "POST",
        headers: { "Content-Type": "application/json" },
        body: JSON.stringify(body),
    });
const seconds = async (work) => {
    const begin = performance.now();
    await work();
    return (performance.now() - begin) / 1000;
};

test("is nowhere but at its address", async () => {
    const { origin } = new URL(server.address);
    const almost = new URL(server.address).pathname.slice(0, -1);
    for (const path of ["/", "/preview.js", "/api/files", `/${"0".repeat(32)}/`, almost])
        assert.equal((await fetch(origin + path)).status, 404, path);
    assert.equal((await ask(`${origin}/`, "api/save", {})).status, 404);
    assert.equal((await ask(server.address, "api/save", {})).status, 400);
    assert.equal((await fetch(server.address)).status, 200);
});

test("gives a drawing up that no one waits for any more", async () => {
    const path = join(place.folder, "endless.json");
    await writeFile(path, endless());
    await on("agenda/document.json", async (page) => {
        await page.selectOption("#file", "endless.json");
        await page.waitForTimeout(500);
        const before = Number(await page.getAttribute("#stage", "data-change"));
        assert.notEqual(await page.getAttribute(selected, "data-change"), String(before), "it is still being drawn");
        const taken = await seconds(async () => {
            await page.selectOption("#file", "clock/document.json");
            await drawn(page, before);
        });
        assert.ok(taken < 5, `after ${taken} s`);
    });
    await rm(path);
});

test("answers, and ends, while it draws without an end", async () => {
    const busy = await serve(place.folder, "--budget-seconds", "600", "--budget-pixels", "1000000000000");
    const drawings = Array.from({ length: 8 }, () => ask(busy.address, "api/render", drawing(endless())));
    const drawn = Promise.allSettled(drawings);
    await new Promise((resolve) => setTimeout(resolve, 500));
    const answered = await seconds(async () => assert.equal((await fetch(`${busy.address}api/files`)).status, 200));
    assert.ok(answered < 2, `answered after ${answered} s`);
    const ended = await seconds(async () => assert.equal(await busy.stop(), 0));
    assert.ok(ended < 2.5, `ended after ${ended} s`);
    assert.ok((await drawn).every(({ status }) => status === "rejected"));
});
