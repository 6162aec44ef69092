// SPDX-License-Identifier: MIT

// The two texts that are edited, the files they come from, and how both stay together.
import type { Drawing, MadeFile, ProjectFile } from "./api";
import { createFiles, fetchFile, fetchFiles, saveFile } from "./api";
import { announce, byId } from "./dom";
import type { Editor } from "./editor";
import { FileList } from "./file_list";
import { freeName } from "./name_field";
import type { SaveDialog } from "./save_dialog";
import type { HeldSettings } from "./settings";
import { readModel, readModels } from "./settings";
import type { Role, Sending } from "./source";
import { Source, noText } from "./source";
import type { State } from "./state";

export type Drawable = Pick<Drawing, "document" | "model" | "path">;

export class Sources {
    readonly document: Source;
    readonly model: Source;
    private readonly list: FileList;

    constructor(
        private readonly state: State,
        editors: Record<Role, Editor>,
        private readonly settings: HeldSettings,
        private readonly saveDialog: SaveDialog,
        private readonly changed: () => void,
    ) {
        this.document = new Source("document", editors.document);
        this.model = new Source("model", editors.model);
        this.list = new FileList(state, (path) => void this.choose(path));
        byId("save").addEventListener("click", () => void this.save());
        byId("reload").addEventListener("click", () => void this.reloadAll());
        byId("keep").addEventListener("click", () => (byId("changed-on-disk").hidden = true));
        window.addEventListener("hashchange", () => void this.choose(wantedPath()));
        window.addEventListener("beforeunload", (event) => this.isChanged && event.preventDefault());
    }

    private get both(): Source[] {
        return [this.document, this.model];
    }

    /** The files that are shown. */
    get paths(): string[] {
        const models = [...this.state.models.values()];
        return [...this.both, ...models].map(({ path }) => path).filter((path) => path !== null);
    }

    /** Whether something would be lost. */
    get isChanged(): boolean {
        return this.both.some((source) => source.isChanged);
    }

    /** What is to be drawn; nothing while there is no document. */
    get drawn(): Drawable | null {
        const { path, text } = this.document;
        return path === null && text === ""
            ? null
            : { path, document: text, model: this.model.isEmpty ? null : this.model.text };
    }

    /** Lists the folder's documents and opens the one that the address names, or the first. */
    async start(): Promise<void> {
        const wanted = wantedPath();
        const documents = this.state.files.filter((file) => file.kind === "document");
        const first = documents.find((file) => file.path === wanted) ?? documents[0];
        if (first) await this.open(first.path);
        else this.changed();
    }

    private fileOf(path: string | null): ProjectFile | undefined {
        return this.state.files.find((file) => file.path === path);
    }

    /** Whether another document may be opened. */
    mayGo(): boolean {
        return mayLose(this.both, "Open another document anyway?");
    }

    /** Opens another document, if what is not saved may be lost. */
    private async choose(path: string): Promise<void> {
        if (path && path !== this.document.path && this.mayGo()) await this.open(path);
        else this.update();
    }

    /** Opens a document, without its model where that cannot be read; where it cannot be read itself, nothing changes. */
    async open(path: string): Promise<void> {
        try {
            const file = this.fileOf(path);
            const [text, model, models] = await Promise.all([fetchFile(path), usualModel(file), readModels(file)]);
            this.saveDialog.close(); // it asks for the name of what is gone now
            this.document.take(path, text);
            this.model.take(model?.path ?? null, model ?? noText);
            this.settings.take(file, models);
            this.changed();
            for (const source of this.both) source.open();
            setAddress(path);
            byId("changed-on-disk").hidden = true;
        } catch (error) {
            announce((error as Error).message);
            this.changed(); // the list names what is open, and not what was chosen
        }
    }

    /** Opens a document that has just been made. */
    async openMade(path: string): Promise<void> {
        await this.listFiles();
        await this.open(path);
    }

    /** Shows a dropped text in place of the document or the model, until another document is opened. */
    drop(role: Role, name: string, text: string): void {
        if (!mayLose([this[role]], `Show ${name} in place of the ${role} anyway?`)) return;
        this.saveDialog.close();
        if (role === "document") this.settings.take(undefined, new Map());
        else this.state.models = new Map(); // as a model that a command line names, it is every family's
        this[role].drop(name, text);
        if (role === "document") setAddress("");
        this.changed();
        announce(`${name} is shown as the ${role}`);
    }

    /** Writes what has changed into its files, and asks for the name of what has none. */
    async save(): Promise<void> {
        let isAll = true;
        for (const source of this.both) {
            const { path, revision } = source;
            if (!path || !source.isChanged) continue;
            isAll = false;
            const sent = source.send();
            try {
                sent.settle({ path, revision: await saveFile(path, sent.text, revision) });
                announce(`Saved ${path}`);
            } catch (error) {
                announce((error as Error).message);
            }
        }
        this.update();
        // A dropped text lies elsewhere, and is asked for only when it alone can be meant.
        if (isAll || this.both.some((source) => source.isWithoutFile && source.isChanged)) this.saveNew();
    }

    /** What came from no file becomes one, a document together with the model that it is shown with. */
    private saveNew(): void {
        const document = this.document.isWithoutFile ? this.document : null;
        const model = document ? !this.model.isEmpty : this.model.isWithoutFile;
        if (!document && !model) return;
        const made = [...(document ? [document] : []), ...(model ? [this.model] : [])];
        this.saveDialog.open({
            title: document ? "Save the document" : "Save the model",
            name: this.proposedName(),
            files: (stem) => made.map(({ role }) => (role === "document" ? `${stem}.json` : `${stem}.model.json`)),
            save: async (name) => {
                const sent = made.map((source) => source.send());
                await this.settle(sent, await createFiles(name, textsOf(sent)));
            },
        });
    }

    private proposedName(): string {
        const { path, name } = this.document;
        if (path) return path.replace(/\.json$/, "");
        const dropped = / \(dropped\)$/.test(name) ? name.replace(/(\.json)? \(dropped\)$/, "") : "widget";
        return freeName(dropped, this.state.files);
    }

    /** Texts have become files; what belongs to them by their names now does. */
    private async settle(sent: Sending[], files: MadeFile[]): Promise<void> {
        sent.forEach((each, i) => files[i] && each.settle(files[i]));
        announce(`Saved ${files.map(({ path }) => path).join(" and ")}`);
        await this.listFiles();
        const file = this.fileOf(this.document.path);
        const model = this.model.path === null && this.model.isEmpty ? await usualModel(file) : null;
        if (model) {
            this.model.take(model.path, model);
            this.model.open();
        }
        await this.takeOthers();
        if (this.document.path) setAddress(this.document.path);
        this.changed();
    }

    /** Takes over what belongs to the document, where that is something else now. */
    private async takeOthers(reads = false): Promise<void> {
        const file = this.fileOf(this.document.path);
        const areOthers = this.settings.areOthers(file);
        if (!areOthers && !reads) return;
        const models = await readModels(file);
        if (areOthers) this.settings.take(file, models);
        else this.state.models = models;
        this.changed();
    }

    private async listFiles(): Promise<void> {
        this.state.files = await fetchFiles();
        this.update();
    }

    /** Files have changed on disk. */
    async refresh(paths: string[]): Promise<void> {
        await this.listFiles();
        if (!this.drawn && !this.isChanged && !this.model.isWithoutFile) return this.start();
        const own = [...this.state.models.values()].map(({ path }) => path);
        await this.takeOthers(paths.some((path) => own.includes(path)));
        for (const source of this.both) if (source.path && paths.includes(source.path)) await this.reload(source);
    }

    private async reload(source: Source): Promise<void> {
        const { path } = source;
        const file = this.fileOf(path);
        if (!path || !file || file.revision === source.revision) return;
        if (source.isChanged) {
            byId("changed-name").textContent = path;
            byId("changed-on-disk").hidden = false;
            return;
        }
        await source.reload();
        this.update();
    }

    private async reloadAll(): Promise<void> {
        for (const source of this.both) await source.reload();
        byId("changed-on-disk").hidden = true;
        this.update();
    }

    /** Shows which texts are not saved, and which cannot be. */
    update(): void {
        const broken = this.both.filter((source) => source.path !== null && !source.isUtf8);
        byId("not-utf8-name").textContent = broken.map((source) => source.path).join(", ");
        byId("not-utf8").hidden = broken.length === 0;
        for (const source of this.both) {
            const tab = byId(`${source.role}-tab`);
            tab.classList.toggle("changed", source.isChanged);
            tab.querySelector(".file-name")!.textContent = source.name;
        }
        const canBeSaved = this.both.some((source) => source.isWithoutFile || (source.path && source.isChanged));
        byId<HTMLButtonElement>("save").disabled = !canBeSaved;
        this.list.show(this.document);
        document.title = `${this.isChanged ? "• " : ""}${this.document.path ?? this.state.project.name} – Tavrin`;
    }
}

/** The document that the address names; nothing where it is no text. */
function wantedPath(): string {
    try {
        return decodeURIComponent(location.hash.slice(1));
    } catch {
        return "";
    }
}

/** The model that belongs to a document; nothing where it has none, or one that cannot be read. */
const usualModel = async (file: ProjectFile | undefined) => (file?.model ? readModel(file.model, "The model") : null);

/** Asks where something would be lost. */
const mayLose = (sources: Source[], question: string): boolean =>
    sources.every((source) => !source.isChanged) || confirm(`What you have changed is not saved. ${question}`);

const setAddress = (path: string): void => history.replaceState(null, "", `#${encodeURIComponent(path)}`);

function textsOf(sent: Sending[]): { document: string | null; model: string | null } {
    const textOf = (role: Role) => sent.find((each) => each.role === role)?.text ?? null;
    return { document: textOf("document"), model: textOf("model") };
}
