// SPDX-License-Identifier: MIT

// Puts the page together.
import { fetchFiles, fetchProject } from "./api";
import { documentCompletion, documentHover } from "./document_help";
import { announce, byId, element } from "./dom";
import { acceptDrops } from "./drop";
import { Editor } from "./editor";
import { Inspection } from "./inspection";
import { goToNextProblem } from "./problems";
import { Reporting } from "./reporting";
import type { Schema } from "./schema";
import { download, sharedPage } from "./share";
import { alt, control, focusNextRegion, plain, setUpShortcuts } from "./shortcuts";
import type { Role } from "./sources";
import { Sources } from "./sources";
import { Stage } from "./stage";
import type { Appearances, State } from "./state";
import { checkedLooks } from "./state";
import { setUpTabs, showTab } from "./tabs";
import { TimeBar } from "./time_bar";

const defaultScreen = "390x844";

let schema: Schema | null = null;

async function loadSchema(): Promise<void> {
    const response = await fetch("api/schema");
    if (response.ok) schema = (await response.json()) as Schema;
}

async function initialState(): Promise<State> {
    const [project, files] = await Promise.all([fetchProject(), fetchFiles()]);
    const screen = project.screens.find(({ name }) => name === defaultScreen) ?? project.screens[0];
    if (!screen) throw new Error("no screens are known");
    return {
        project,
        files,
        screen,
        meant: [],
        appearances: "both",
        moment: Math.floor(Date.now() / 1000),
        timeZone: project.timeZone,
    };
}

function setUpScreens(state: State, changed: () => void): void {
    const select = byId<HTMLSelectElement>("screen");
    select.append(
        ...state.project.screens.map(({ name }) => element("option", { value: name }, name.replace("x", " × "))),
    );
    select.value = state.screen.name;
    select.addEventListener("change", () => {
        state.screen = state.project.screens.find(({ name }) => name === select.value) ?? state.screen;
        changed();
    });
}

function setUpAppearances(state: State, changed: () => void): void {
    for (const radio of document.querySelectorAll<HTMLInputElement>("input[name=appearance]"))
        radio.addEventListener("change", () => {
            state.appearances = radio.value as Appearances;
            changed();
        });
}

/** Hears of changed files, and asks again for all of them after the server was away. */
function listen(sources: Sources): void {
    const events = new EventSource("api/events");
    let wasAway = false;
    events.onmessage = (event) => void sources.refresh((JSON.parse(event.data as string) as { paths: string[] }).paths);
    events.onerror = () => {
        wasAway = true;
        byId("connection").hidden = false;
    };
    events.onopen = () => {
        byId("connection").hidden = true;
        if (wasAway) void sources.refresh([sources.document.path, sources.model.path].filter((path) => path !== null));
        wasAway = false;
    };
}

async function share(state: State, sources: Sources, stage: Stage, inspection: Inspection): Promise<void> {
    await stage.drawUnseen();
    const name = (sources.document.path ?? "widget").replace(/\.json$/, "");
    const texts = { document: sources.document.text, model: sources.model.text };
    const page = sharedPage(name, state, stage.tiles, texts, inspection.root);
    download(`${name.replaceAll("/", "-")}.html`, page, "text/html");
    announce("The page is in your downloads");
}

const asked = initialState();

async function start(): Promise<void> {
    setUpTabs();
    const state = await asked;
    const changed = (): void => {
        stage.invalidate();
        sources.update();
    };
    const editors: Record<Role, Editor> = {
        document: new Editor({
            label: "Document",
            parent: byId("document-panel"),
            completion: documentCompletion(
                () => schema,
                () => editors.model.text,
            ),
            hover: documentHover(() => schema),
            changed: () => changed(),
            moved: () => inspection.follow(),
        }),
        model: new Editor({
            label: "Model",
            parent: byId("model-panel"),
            completion: () => null,
            changed: () => changed(),
        }),
    };
    const reporting = new Reporting(editors, () => checkedLooks(state));
    const inspection = new Inspection(() => stage, editors.document);
    const stage: Stage = new Stage(byId("stage"), state, () => sources.drawn, {
        drawn: (drawn, drawing) => {
            reporting.drawn(drawn, drawing);
            if (!drawn.failure) inspection.update(drawing);
        },
        failed: (error) => announce(error.message),
        hovered: (point) => inspection.hover(point),
        picked: (point) => inspection.pick(point),
    });
    const sources = new Sources(state, editors, changed);
    const timeBar = new TimeBar(
        state,
        () => stage.moveClock(),
        () => stage.invalidate(),
    );
    const shareNow = (): void => void share(state, sources, stage, inspection);

    setUpScreens(state, () => stage.build());
    setUpAppearances(state, () => stage.build());
    byId("share").addEventListener("click", shareNow);
    acceptDrops((role, name, text) => {
        showTab(role);
        sources.drop(role, name, text);
    });
    setUpShortcuts([
        { keys: "Ctrl-S", does: "saves", matches: control("s"), run: () => void sources.save() },
        { keys: "F6", does: "to the next region", matches: plain("F6"), run: focusNextRegion },
        { keys: "F8", does: "to the next problem", matches: plain("F8"), run: goToNextProblem },
        { keys: "Alt-1", does: "the document", matches: alt("Digit1"), run: () => openTab("document") },
        { keys: "Alt-2", does: "the model", matches: alt("Digit2"), run: () => openTab("model") },
        { keys: "Alt-P", does: "lets the clock run, or stops it", matches: alt("KeyP"), run: () => timeBar.toggle() },
        { keys: "Alt-S", does: "shares a page", matches: alt("KeyS"), run: shareNow },
    ]);
    const openTab = (role: Role): void => {
        showTab(role);
        editors[role].view.focus();
    };

    stage.build();
    await sources.start();
    listen(sources);
    document.body.classList.add("ready");
    void loadSchema();
}

start().catch((error: unknown) => announce(error instanceof Error ? error.message : String(error)));
