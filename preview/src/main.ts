// SPDX-License-Identifier: MIT

// Puts the page together.
import { fetchFiles, fetchProject } from "./api";
import { documentCompletion, documentHover } from "./document_help";
import { announce, byId } from "./dom";
import { acceptDrops } from "./drop";
import { Editor } from "./editor";
import { Inspection } from "./inspection";
import { LookControls } from "./looks";
import { goToNextProblem } from "./problems";
import { Reporting } from "./reporting";
import { SaveDialog } from "./save_dialog";
import type { Schema } from "./schema";
import { HeldSettings } from "./settings";
import { download, sharedPage } from "./share";
import { alt, control, focusNextRegion, plain, setUpShortcuts } from "./shortcuts";
import type { Role } from "./source";
import { Sources } from "./sources";
import { Stage } from "./stage";
import type { State } from "./state";
import { checksOf } from "./state";
import { setUpTabs, showTab } from "./tabs";
import { TimeBar } from "./time_bar";
import { Welcome } from "./welcome";

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
        background: null,
        models: new Map(),
    };
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
        if (wasAway) void sources.refresh(sources.paths);
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
        sources.update();
        const isEmpty = sources.drawn === null;
        welcome.update(isEmpty);
        if (isEmpty) reporting.clear();
        stage.update();
    };
    const editors: Record<Role, Editor> = {
        document: new Editor({
            label: "Document",
            hint: "Type or paste a document, or drop its file on the page",
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
            hint: "Type or paste a model, or drop its file on the page",
            parent: byId("model-panel"),
            completion: () => null,
            changed: () => changed(),
        }),
    };
    const openTab = (role: Role): void => {
        showTab(role);
        editors[role].view.focus();
    };
    const reporting = new Reporting(
        editors,
        (drawing) => checksOf(state, drawing, sources.drawn?.model ?? null),
        (family) => state.models.get(family) ?? null,
    );
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
    const settings = new HeldSettings(state, () => {
        if (settings.holdsMoment) timeBar.stop();
        timeBar.show();
        looks.show();
        stage.opening();
    });
    const sources = new Sources(state, editors, settings, new SaveDialog(), changed);
    const looks = new LookControls(state, settings, () => stage.update());
    const timeBar = new TimeBar(
        state,
        settings,
        () => stage.moveClock(),
        () => stage.invalidate(),
    );
    const welcome = new Welcome(state, {
        mayGo: () => sources.mayGo(),
        made: async (path) => {
            await sources.openMade(path);
            openTab("document");
        },
    });
    const shareNow = (): void => void share(state, sources, stage, inspection);

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
        { keys: "Alt-N", does: "begins a new widget", matches: alt("KeyN"), run: () => welcome.open() },
        { keys: "Alt-P", does: "lets the clock run, or stops it", matches: alt("KeyP"), run: () => timeBar.toggle() },
        { keys: "Alt-S", does: "shares a page", matches: alt("KeyS"), run: shareNow },
    ]);

    await sources.start();
    listen(sources);
    document.body.classList.add("ready");
    void loadSchema();
}

start().catch((error: unknown) => announce(error instanceof Error ? error.message : String(error)));
