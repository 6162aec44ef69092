// SPDX-License-Identifier: MIT

// The list of the folder's documents in the header.
import { byId, element } from "./dom";
import type { Source } from "./source";
import type { State } from "./state";

export class FileList {
    private readonly select = byId<HTMLSelectElement>("file");
    /** What the list was made of. */
    private listed: string[] = [];

    constructor(
        private readonly state: State,
        choose: (path: string) => void,
    ) {
        this.select.addEventListener("change", () => choose(this.select.value));
    }

    /** Shows which document is open, be it one of no file. */
    show({ path, isWithoutFile, name }: Source): void {
        const paths = this.state.files.filter((file) => file.kind === "document").map((file) => file.path);
        const unsaved = isWithoutFile ? name || "Not saved" : paths.length === 0 ? "No documents" : "";
        const first = path === null && unsaved !== "" ? [unsaved] : [];
        const listed = [...first, ...paths];
        if (listed.length !== this.listed.length || listed.some((each, i) => each !== this.listed[i])) {
            this.listed = listed;
            const unnamed = first.map((text) => element("option", { value: "" }, text));
            this.select.replaceChildren(...unnamed, ...paths.map((value) => element("option", { value }, value)));
        }
        this.select.value = path ?? "";
    }
}
