// SPDX-License-Identifier: MIT

// The two texts that are edited, the files they come from, and how both stay together.
import type { Drawing, FileText, ProjectFile } from "./api";
import { fetchFile, fetchFiles, saveFile } from "./api";
import { announce, byId, element } from "./dom";
import type { Editor } from "./editor";
import type { State } from "./state";

export type Drawable = Pick<Drawing, "document" | "model" | "path">;
export type Role = "document" | "model";

/** One text: what is in the editor, and what the file had when it was read. */
class Source {
    path: string | null = null;
    name = "";
    saved = "";
    revision = "";
    isUtf8 = true;
    /** What ends the file's lines; in editors it is always "\n". */
    private lineEnd = "\n";
    /** A text that is to be drawn before the editor shows it. */
    private coming: string | null = null;

    constructor(
        readonly role: Role,
        readonly editor: Editor,
    ) {}

    get text(): string {
        return this.coming ?? this.editor.text;
    }

    get isChanged(): boolean {
        return this.text !== this.saved;
    }

    get textOfFile(): string {
        return this.text.replaceAll("\n", this.lineEnd);
    }

    take(path: string | null, file: FileText): void {
        const name = path?.slice(path.lastIndexOf("/") + 1) ?? "none";
        Object.assign(this, { path, name });
        this.coming = this.read(file);
    }

    private read({ text, revision, isUtf8 }: FileText): string {
        this.lineEnd = text.includes("\r\n") ? "\r\n" : "\n";
        this.saved = text.replaceAll(/\r\n?/g, "\n");
        Object.assign(this, { revision, isUtf8 });
        return this.saved;
    }

    open(): void {
        if (this.coming !== null) this.editor.open(this.coming);
        this.coming = null;
    }

    /** Takes the file's text over, in place of what is in the editor. */
    async reload(): Promise<void> {
        if (!this.path) return;
        this.editor.replace(this.read(await fetchFile(this.path)));
    }
}

export class Sources {
    readonly document: Source;
    readonly model: Source;
    private readonly select = byId<HTMLSelectElement>("file");

    constructor(
        private readonly state: State,
        editors: Record<Role, Editor>,
        private readonly changed: () => void,
    ) {
        this.document = new Source("document", editors.document);
        this.model = new Source("model", editors.model);
        this.select.addEventListener("change", () => void this.choose(this.select.value));
        byId("save").addEventListener("click", () => void this.save());
        byId("reload").addEventListener("click", () => void this.reloadAll());
        byId("keep").addEventListener("click", () => (byId("changed-on-disk").hidden = true));
        window.addEventListener("hashchange", () => void this.choose(wantedPath()));
        window.addEventListener("beforeunload", (event) => this.isChanged && event.preventDefault());
    }

    get isChanged(): boolean {
        return [this.document, this.model].some((source) => source.path !== null && source.isChanged);
    }

    /** What is to be drawn; nothing while there is no document. */
    get drawn(): Drawable | null {
        const { path, text } = this.document;
        return path === null && text === ""
            ? null
            : { path, document: text, model: this.model.text.trim() ? this.model.text : null };
    }

    /** Lists the folder's documents and opens the one that the address names, or the first. */
    async start(): Promise<void> {
        this.list();
        const wanted = wantedPath();
        const documents = this.state.files.filter((file) => file.kind === "document");
        const first = documents.find((file) => file.path === wanted) ?? documents[0];
        if (first) await this.open(first.path);
    }

    list(): void {
        const folders = Map.groupBy(
            this.state.files.filter((file) => file.kind === "document"),
            (file) => file.path.slice(0, Math.max(file.path.lastIndexOf("/"), 0)),
        );
        const options = [...folders].flatMap(([, files]) =>
            files.map((file) => element("option", { value: file.path }, file.path)),
        );
        this.select.replaceChildren(...options);
        if (options.length === 0) this.select.append(element("option", { value: "" }, "No documents"));
        this.select.value = this.document.path ?? "";
    }

    /** Opens another document, if what is not saved may be lost. */
    private async choose(path: string): Promise<void> {
        if (!path || path === this.document.path) return;
        const mayGo = !this.isChanged || confirm("What you have changed is not saved. Open another document anyway?");
        if (mayGo) await this.open(path);
        this.select.value = this.document.path ?? "";
    }

    async open(path: string): Promise<void> {
        try {
            const model = this.state.files.find((file) => file.path === path)?.model ?? null;
            const [text, modelText] = await Promise.all([fetchFile(path), model === null ? null : fetchFile(model)]);
            this.document.take(path, text);
            this.takeMeant();
            this.model.take(model, modelText ?? { text: "", revision: "", isUtf8: true });
            this.changed();
            this.document.open();
            this.model.open();
            history.replaceState(null, "", `#${encodeURIComponent(path)}`);
            this.select.value = path;
            byId("changed-on-disk").hidden = true;
        } catch (error) {
            announce((error as Error).message);
        }
    }

    /** Takes over what the settings of the document say. */
    private takeMeant(): void {
        const file = this.state.files.find(({ path }) => path === this.document.path);
        if (file?.fault) announce(file.fault);
        this.state.meant = file?.families ?? [];
    }

    /** Shows a dropped text in place of the document or the model, until another document is opened. */
    drop(role: Role, name: string, text: string): void {
        const source = this[role];
        source.name = `${name} (dropped)`;
        source.path = role === "document" ? this.document.path : null;
        if (role === "model") source.saved = text;
        source.editor.replace(text);
        this.update();
        announce(`${name} is shown as the ${role}`);
    }

    /** Writes what has changed into its files. */
    async save(): Promise<void> {
        for (const source of [this.document, this.model]) {
            if (!source.path || !source.isChanged) continue;
            const { text } = source;
            try {
                source.revision = await saveFile(source.path, source.textOfFile, source.revision);
                source.saved = text;
                announce(`Saved ${source.path}`);
            } catch (error) {
                announce((error as Error).message);
            }
        }
        this.update();
    }

    /** Files have changed on disk. */
    async refresh(paths: string[]): Promise<void> {
        const before = names(this.state.files);
        this.state.files = await fetchFiles();
        if (names(this.state.files) !== before) this.list();
        if (!this.document.path) return void (await this.start());
        if (paths.some((path) => path.endsWith(".toml"))) {
            this.takeMeant();
            this.changed();
        }
        for (const source of [this.document, this.model])
            if (source.path && paths.includes(source.path)) await this.reload(source);
    }

    private async reload(source: Source): Promise<void> {
        const { path } = source;
        const file = this.state.files.find((each) => each.path === path);
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
        for (const source of [this.document, this.model]) await source.reload();
        byId("changed-on-disk").hidden = true;
        this.update();
    }

    /** Shows which texts are not saved, and which cannot be. */
    update(): void {
        const broken = [this.document, this.model].filter((source) => source.path !== null && !source.isUtf8);
        byId("not-utf8-name").textContent = broken.map((source) => source.path).join(", ");
        byId("not-utf8").hidden = broken.length === 0;
        for (const source of [this.document, this.model]) {
            const tab = byId(`${source.role}-tab`);
            const isChanged = source.path !== null && source.isChanged;
            tab.classList.toggle("changed", isChanged);
            tab.querySelector(".file-name")!.textContent = source.name;
        }
        byId<HTMLButtonElement>("save").disabled = !this.isChanged;
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

const names = (files: ProjectFile[]): string => files.map((file) => `${file.kind} ${file.path}`).join("\n");
