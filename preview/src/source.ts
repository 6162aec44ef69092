// SPDX-License-Identifier: MIT

// One text: what is in the editor, and what the file had when it was read.
import type { FileText, MadeFile } from "./api";
import { fetchFile } from "./api";
import type { Editor } from "./editor";

export type Role = "document" | "model";

/** A text on its way into a file. */
export interface Sending {
    role: Role;
    /** As the file is to have it. */
    text: string;
    /** It has become a file; of no account where another text is shown by then. */
    settle: (file: MadeFile) => void;
}

export const noText: FileText = { text: "", revision: "", isUtf8: true };

const lastName = (path: string): string => path.slice(path.lastIndexOf("/") + 1);

export class Source {
    /** The file's; null for a text that came from none. */
    path: string | null = null;
    name = "";
    saved = "";
    revision = "";
    isUtf8 = true;
    /** What ends the file's lines; in editors it is always "\n". */
    private lineEnd = "\n";
    /** How many texts were shown: what becomes of one is not to be told of the next. */
    private shown = 0;
    /** A text that is to be drawn before the editor shows it. */
    private coming: string | null = null;

    constructor(
        readonly role: Role,
        readonly editor: Editor,
    ) {}

    get text(): string {
        return this.coming ?? this.editor.text;
    }

    /** Whether something would be lost. */
    get isChanged(): boolean {
        return this.text !== this.saved;
    }

    get isEmpty(): boolean {
        return this.text.trim() === "";
    }

    /** Whether it can be made a file. */
    get isWithoutFile(): boolean {
        return this.path === null && !this.isEmpty;
    }

    take(path: string | null, file: FileText): void {
        Object.assign(this, { path, name: path === null ? "none" : lastName(path) });
        this.coming = this.read(file);
    }

    /** Shows a text that came from no file of the folder, and is not lost with the page. */
    drop(name: string, text: string): void {
        Object.assign(this, { path: null, name: `${name} (dropped)` });
        this.editor.replace(this.read({ ...noText, text }));
    }

    /** What is sent is what the editor has now. */
    send(): Sending {
        const { role, text, shown } = this;
        const settle = ({ path, revision }: MadeFile): void => {
            if (shown === this.shown) Object.assign(this, { path, revision, name: lastName(path), saved: text });
        };
        return { role, text: text.replaceAll("\n", this.lineEnd), settle };
    }

    private read({ text, revision, isUtf8 }: FileText): string {
        this.shown++;
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
        if (this.path) this.editor.replace(this.read(await fetchFile(this.path)));
    }
}
