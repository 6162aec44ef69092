// SPDX-License-Identifier: MIT

// The preview and the files of a folder, in a real browser: how a widget begins, how texts become files, and what
// settings hold.
import assert from "node:assert/strict";
import { readFile, readdir, rename, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { drawn, drop, emptyFolder, launch, leastContrast, picture, redrawn, selected, serve, visit } from "./place.mjs";

let browser;

before(async () => (browser = await launch()));
after(() => browser?.close());

const greeting = (content = "{{initServerParam.a}}") => ({
    version: "1.0",
    nodes: { main: { type: "text", content } },
});

const textOf = (content) => (typeof content === "string" ? content : JSON.stringify(content));

/** Writes a file so that those who watch the folder see it whole. */
async function write(folder, name, content) {
    const hidden = join(folder, `.${name}`);
    await writeFile(hidden, textOf(content));
    await rename(hidden, join(folder, name));
}

/** The status with which a request was refused, or what else a page complains about. */
const refusal = (complaint) => Number(/the server responded with a status of (\d+)/.exec(complaint)?.[1]) || complaint;

/**
 * A test in a folder of its own: shows it, works on the page, and makes sure that this had nothing to complain about
 * but requests that are refused with these statuses.
 */
const on =
    (files, document, work, { viewport = { width: 1000, height: 460 }, refused = [] } = {}) =>
    async () => {
        const { folder: path, remove } = await emptyFolder();
        const folder = {
            write: (name, content) => write(path, name, content),
            read: (name) => readFile(join(path, name), "utf8"),
            names: async () => (await readdir(path, { recursive: true })).sort(),
        };
        for (const [name, content] of Object.entries(files)) await folder.write(name, content);
        const server = await serve(path);
        try {
            const { page, complaints, close } = await visit(browser, server.address, document, { viewport });
            await work(page, folder);
            assert.deepEqual(complaints.map(refusal), refused);
            await close();
        } finally {
            assert.equal(await server.stop(), 0, "the program ends cleanly");
            await remove();
        }
    };

/** Waits for a sentence at the foot of the page. */
const announced = (page, sentence) => page.locator("#announcement", { hasText: sentence }).waitFor();

const fault = (form, page) => page.locator(`${form} .fault`);

const settings = `screens = ["430x932", "390x844"]
date = 2026-11-21T16:30:00Z
time-zone = "Asia/Kolkata"
appearance = "dark"
background = "none"
families = ["systemSmall", "systemMedium"]
models = {systemSmall = "small.json"}
`;
const held = async (page) => ({
    screen: await page.inputValue("#screen"),
    clock: await page.inputValue("#time-field"),
    zone: await page.inputValue("#time-zone"),
    appearance: await page.inputValue("input[name=appearance]:checked"),
});
const inSettings = { screen: "430x932", clock: "2026-11-21T22:00", zone: "Asia/Kolkata", appearance: "dark" };

const heldWidget = {
    "w.json": greeting(),
    "w.model.json": { a: "usual" },
    "small.json": { a: "small" },
    "w.widget.toml": settings,
    "other.json": greeting("other"),
};

describe("The preview and the files of its folder", { concurrency: 3 }, () => {
    test(
        "offers templates where there is nothing, and begins with one",
        on(
            {},
            "",
            async (page, folder) => {
                assert.ok(await page.locator("#welcome").isVisible());
                assert.ok(await page.locator("#stage").isHidden());
                await page.waitForFunction(() => {
                    const images = [...document.querySelectorAll("#welcome img")];
                    return images.length === 6 && images.every((image) => image.naturalWidth > 0);
                });
                for (const colorScheme of ["light", "dark"]) {
                    await page.emulateMedia({ colorScheme });
                    const contrast = await leastContrast(page, "#welcome :is(h2, p, b, label, .words span, button)");
                    assert.ok(contrast >= 4.5, `${colorScheme}: ${contrast}`);
                }
                await page.focus("#welcome input:checked");
                await page.keyboard.press("ArrowRight");
                await page.keyboard.press("ArrowRight");
                const name = page.locator("#welcome .name-field input");
                assert.equal(await name.inputValue(), "ring", "named after what is chosen");
                assert.equal(
                    await page.locator("#welcome .hint").textContent(),
                    "Makes ring.json, ring.model.json and ring.widget.toml",
                );
                await name.fill("../steps");
                await page.keyboard.press("Enter");
                await fault("#welcome", page).filter({ hasText: "nothing can be called '../steps.json'" }).waitFor();
                assert.equal(await name.getAttribute("aria-invalid"), "true");
                assert.deepEqual(await folder.names(), []);
                await name.fill("widgets/steps");
                assert.equal(await fault("#welcome", page).textContent(), "");
                const checked = page.waitForResponse((response) => response.url().endsWith("api/check"));
                await page.keyboard.press("Enter");
                await drawn(page);
                assert.deepEqual(await folder.names(), [
                    "widgets",
                    ...["json", "model.json", "widget.toml"].map((ending) => `widgets/steps.${ending}`),
                ]);
                assert.ok(await page.locator("#welcome").isHidden());
                assert.equal(await page.inputValue("#file"), "widgets/steps.json");
                assert.match(page.url(), /#widgets%2Fsteps\.json$/);
                assert.match(await page.locator("#model-tab").textContent(), /steps\.model\.json/);
                assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-label")), "Document");
                const findings = await (await checked).json();
                assert.deepEqual(
                    findings.filter(({ severity }) => severity !== "note"),
                    [],
                );
                assert.equal(await page.locator(".problem").count(), 0);
            },
            { viewport: { width: 390, height: 800 }, refused: [403] },
        ),
    );

    test(
        "begins another widget from the header, and overwrites nothing",
        on(
            { "ring.json": greeting("mine") },
            "ring.json",
            async (page, folder) => {
                await drawn(page);
                await page.keyboard.press("Alt+n");
                const dialog = page.getByRole("dialog", { name: "A new widget" });
                await dialog.getByRole("radio", { name: /^ring A ring that shows/ }).check({ force: true });
                const name = dialog.getByRole("textbox", { name: "Name" });
                assert.equal(await name.inputValue(), "ring-2", "the other name is taken");
                await name.fill("ring");
                await page.keyboard.press("Enter");
                await fault("#new-dialog", page).filter({ hasText: "'ring.json' is there already" }).waitFor();
                assert.equal(await folder.read("ring.json"), JSON.stringify(greeting("mine")));
                await page.keyboard.press("Escape");
                assert.ok(await dialog.isHidden());
                await page.click("#new");
                await name.fill("rows");
                await dialog.getByRole("radio", { name: /^rows/ }).check({ force: true });
                await redrawn(page, () => dialog.getByRole("button", { name: "Make the widget" }).click());
                assert.equal(await page.inputValue("#file"), "rows.json");
                assert.equal((await folder.names()).length, 4);
            },
            { refused: [409] },
        ),
    );

    test(
        "saves what was typed under a new name, and overwrites nothing",
        on(
            {},
            "",
            async (page, folder) => {
                assert.ok(await page.isDisabled("#save"));
                await page.click("#document-panel .cm-content");
                await page.keyboard.insertText(JSON.stringify(greeting()));
                await drawn(page);
                assert.ok(await page.locator("#welcome").isHidden());
                await page.keyboard.press("Alt+2");
                await page.keyboard.insertText(`{"a": "typed"}`);
                await drawn(page);
                await page.keyboard.press("Control+s");
                const name = page
                    .getByRole("dialog", { name: "Save the document" })
                    .getByRole("textbox", { name: "Name" });
                assert.equal(
                    await page.locator("#save-dialog .hint").textContent(),
                    "Makes widget.json and widget.model.json",
                );
                await folder.write("hello.model.json", "mine");
                await name.fill("hello");
                await page.keyboard.press("Enter");
                await fault("#save-dialog", page).filter({ hasText: "'hello.model.json' is there already" }).waitFor();
                assert.deepEqual(await folder.names(), ["hello.model.json"]);
                await name.fill("greeting");
                await page.keyboard.press("Enter");
                await page.waitForSelector("#save:disabled");
                assert.ok(await page.locator("#save-dialog").isHidden());
                assert.equal(await folder.read("greeting.json"), JSON.stringify(greeting()));
                assert.equal(await folder.read("greeting.model.json"), `{"a": "typed"}`);
                assert.equal(await folder.read("hello.model.json"), "mine");
                assert.equal(await page.inputValue("#file"), "greeting.json");
                await page.click("#model-panel .cm-content");
                await page.keyboard.press("Control+End");
                await page.keyboard.type(" ");
                await page.keyboard.press("Control+s");
                await page.waitForSelector("#save:disabled");
                assert.equal(
                    await folder.read("greeting.model.json"),
                    `{"a": "typed"} `,
                    "it is a file like others now",
                );
            },
            { refused: [409] },
        ),
    );

    test(
        "saves what was dropped, and not over the document that is open",
        on({ "open.json": greeting("open") }, "open.json", async (page, folder) => {
            await drawn(page);
            await redrawn(page, () => drop(page, "model.json", `{"a": "dropped"}`));
            await page.click("#save");
            await page.getByRole("dialog", { name: "Save the model" }).getByRole("button", { name: "Save" }).click();
            await page.waitForSelector("#save:disabled");
            assert.equal(await folder.read("open.model.json"), `{"a": "dropped"}`);
            await redrawn(page, () => drop(page, "other.json", JSON.stringify(greeting())));
            await page.click("#save");
            const dialog = page.getByRole("dialog", { name: "Save the document" });
            assert.equal(await dialog.getByRole("textbox", { name: "Name" }).inputValue(), "other");
            await dialog.getByRole("button", { name: "Save" }).click();
            await page.waitForSelector("#save:disabled");
            assert.equal(await folder.read("other.json"), JSON.stringify(greeting()));
            assert.equal(await folder.read("other.model.json"), `{"a": "dropped"}`, "the model it was shown with");
            assert.equal(await folder.read("open.json"), JSON.stringify(greeting("open")));
        }),
    );

    test(
        "holds what the settings say, until something else is chosen",
        on(heldWidget, "w.json", async (page, folder) => {
            await drawn(page);
            assert.deepEqual(await held(page), inSettings);
            assert.equal(await page.locator("[role=option]").count(), 6);
            const clear = await page.$eval(`${selected} canvas`, (canvas) => {
                const copy = new OffscreenCanvas(canvas.width, canvas.height).getContext("2d");
                copy.drawImage(canvas, 0, 0);
                return copy.getImageData(canvas.width / 2, canvas.height - 4, 1, 1).data[3];
            });
            assert.equal(clear, 0, "nothing lies behind the widget");
            await redrawn(page, () => page.selectOption("#screen", "375x667"));
            await redrawn(page, () => page.click("#now"));
            await redrawn(page, () => folder.write("w.json", greeting("{{initServerParam.a}}!")));
            const chosen = await held(page);
            assert.equal(chosen.screen, "375x667", "a choice lasts while the settings are the same");
            assert.notEqual(chosen.clock, inSettings.clock);
            assert.equal(chosen.zone, "Asia/Kolkata");
            await redrawn(page, () => page.selectOption("#file", "other.json"));
            assert.equal((await held(page)).screen, "390x844", "others are as they were");
            assert.equal((await held(page)).appearance, "both");
            await redrawn(page, () => page.selectOption("#file", "w.json"));
            assert.deepEqual(await held(page), inSettings);
            await redrawn(page, () => page.check("input[value=light]", { force: true }));
            const others = `families = ["accessoryCircular"]\nscreens = ["428x926"]\ndate = 2026-11-21T16:30:00Z\ntime-zone = "GMT-3:30"\n`;
            await redrawn(page, () => folder.write("w.widget.toml", others));
            const inOthers = { screen: "428x926", clock: "2026-11-21T13:00", zone: "GMT-0330", appearance: "both" };
            assert.deepEqual(await held(page), inOthers, "other settings hold at once");
            assert.equal(
                await page.getAttribute(selected, "data-family"),
                "accessoryCircular",
                "which it is meant for",
            );
        }),
    );

    test(
        "draws, checks and shares a family with its own model",
        on(heldWidget, "w.json", async (page, folder) => {
            const models = new Map();
            page.on("request", (request) => {
                if (!request.url().endsWith("api/render")) return;
                const { family, model } = request.postDataJSON();
                models.set(family, model);
            });
            const small = "[data-family=systemSmall]";
            await page.click(small);
            await drawn(page);
            assert.equal(await page.getAttribute(small, "title"), "By its settings drawn with small.json");
            const first = await picture(page);
            await page.click("#model-tab");
            await page.click("#model-panel .cm-content");
            await page.keyboard.press("Control+a");
            await redrawn(page, () => page.keyboard.insertText(`{"a": "edited"}`));
            assert.equal(await picture(page), first, "the editor has the model of the others");
            await redrawn(page, () => folder.write("small.json", { b: 1 }));
            assert.equal(models.get("systemSmall"), `{"b":1}`);
            const problem = page.locator(".problem.error");
            await problem.waitFor();
            assert.match(await problem.textContent(), /key path not found in model/);
            await redrawn(page, () => folder.write("small.json", { a: "changed" }));
            await problem.waitFor({ state: "detached" });
            await page.click("[data-family=systemMedium]");
            await drawn(page);
            assert.equal(models.get("systemMedium"), `{"a": "edited"}`);
            await redrawn(page, () => folder.write("small.json", { b: 1 }));
            await problem.filter({ hasText: "key path not found" }).waitFor(); // found in a family that is not selected
            const [download] = await Promise.all([page.waitForEvent("download"), page.click("#share")]);
            const shared = await readFile(await download.path(), "utf8");
            assert.match(shared, /<summary>Model of systemSmall: small\.json<\/summary><pre>\{&quot;b&quot;:1\}/);
            assert.match(shared, /2026-11-21 22:00:00, Asia\/Kolkata,\nfor a screen of 430x932/);
        }),
    );

    test(
        "opens what can be read, and stays with it where something cannot",
        on(
            {
                "a.json": greeting("a"),
                "a.model.json": " ".repeat((8 << 20) + 1),
                "b.json": greeting("b"),
                "gone.json": greeting("c"),
            },
            "",
            async (page) => {
                await drawn(page);
                assert.match(
                    await page.textContent("#announcement"),
                    /^The model: 'a\.model\.json' is larger than 8 MiB/,
                );
                assert.match(await page.textContent("#model-tab"), /none/);
                assert.equal(await page.inputValue("#file"), "a.json");
                // As one that was taken away and is still listed.
                const message = "there is no 'gone.json'";
                await page.route("**/api/file?path=gone.json", (route) =>
                    route.fulfill({ status: 404, json: { message } }),
                );
                await page.selectOption("#file", "gone.json");
                await announced(page, message);
                assert.equal(await page.inputValue("#file"), "a.json", "which is still open");
                await redrawn(page, () => page.selectOption("#file", "b.json"));
                assert.equal(await page.textContent("#document-panel .cm-content"), JSON.stringify(greeting("b")));
                await page.evaluate(() => history.replaceState(null, "", "#gone.json"));
                await page.reload();
                await page.waitForSelector("body.ready");
                assert.equal(await page.locator("#file option").count(), 3, "others can be chosen");
                assert.equal(await page.inputValue("#file"), "");
                await page.selectOption("#file", "b.json");
                await drawn(page);
            },
            { refused: [413, 404, 404] },
        ),
    );

    test(
        "asks before a dropped file takes the place of what was typed",
        on({ "open.json": greeting("open") }, "open.json", async (page) => {
            await drawn(page);
            await page.click("#document-panel .cm-content");
            await page.keyboard.press("Control+End");
            await page.keyboard.type(" ");
            const asked = (answer) =>
                page.waitForEvent("dialog").then(async (dialog) => (await dialog[answer](), dialog.message()));
            const other = JSON.stringify(greeting("other"));
            const text = () => page.textContent("#document-panel .cm-content");
            const [refused] = await Promise.all([asked("dismiss"), drop(page, "other.json", other)]);
            assert.match(refused, /not saved.*other\.json/);
            assert.equal(await text(), `${JSON.stringify(greeting("open"))} `);
            await redrawn(page, () => drop(page, "model.json", "{}")); // where nothing was typed
            await redrawn(page, () => Promise.all([asked("accept"), drop(page, "other.json", other)]));
            assert.equal(await text(), other);
        }),
    );

    test(
        "saves what was sent, whatever is opened meanwhile",
        on({ "other.json": greeting("other") }, "other.json", async (page, folder) => {
            await drawn(page);
            const goTo = (path) => page.evaluate((path) => (location.hash = path), path);
            const dialog = page.getByRole("dialog", { name: "Save the document" });
            await redrawn(page, () => drop(page, "mine.json", JSON.stringify(greeting("mine"))));
            await page.keyboard.press("Control+s");
            await dialog.waitFor();
            await redrawn(page, () => goTo("other.json"));
            assert.ok(await dialog.isHidden(), "what it asked for is not there any more");
            await redrawn(page, () => drop(page, "mine.json", JSON.stringify(greeting("mine"))));
            await page.keyboard.press("Control+s");
            await page.route("**/api/create", async (route) => {
                await redrawn(page, () => goTo("other.json"));
                await route.continue();
            });
            await dialog.getByRole("button", { name: "Save" }).click();
            await page.locator("#file option", { hasText: "mine.json" }).waitFor({ state: "attached" });
            await announced(page, "Saved mine.json");
            assert.equal(await page.inputValue("#file"), "other.json");
            assert.ok(await page.isDisabled("#save"), "nothing of it was changed");
            assert.equal(await folder.read("mine.json"), JSON.stringify(greeting("mine")));
            assert.equal(await folder.read("other.json"), JSON.stringify(greeting("other")));
        }),
    );

    test(
        "keeps a dropped model when the first file appears",
        on({}, "", async (page, folder) => {
            await drop(page, "model.json", `{"a": "dropped"}`);
            await announced(page, "model.json is shown as the model");
            // When the second is listed, the first would long have been opened.
            for (const name of ["first.json", "second.json"]) {
                await folder.write(name, greeting());
                await page.locator("#file option", { hasText: name }).waitFor({ state: "attached" });
            }
            assert.equal(await page.textContent("#model-panel .cm-content"), `{"a": "dropped"}`);
            await page.selectOption("#file", "first.json");
            await drawn(page);
        }),
    );
});
