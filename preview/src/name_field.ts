// SPDX-License-Identifier: MIT

// Asks for the name of a widget: says which files it makes, and what is wrong with it.
import type { ProjectFile } from "./api";
import { element } from "./dom";

let count = 0;

/** "widgets/habits", also where it is given as "widgets/habits.json". */
const stemOf = (name: string): string => name.trim().replace(/\.json$/, "");

export class NameField {
    readonly block: HTMLElement;
    readonly input: HTMLInputElement;
    private readonly hint: HTMLElement;
    private readonly fault: HTMLElement;

    constructor(private readonly files: (stem: string) => string[]) {
        const id = `name-${++count}`;
        this.hint = element("p", { class: "hint", id: `${id}-hint` });
        this.fault = element("p", { class: "fault", id: `${id}-fault`, role: "alert" });
        this.input = element("input", {
            id,
            type: "text",
            required: true,
            spellcheck: "false",
            autocomplete: "off",
            autocapitalize: "off",
            "aria-describedby": `${id}-hint ${id}-fault`,
        });
        this.block = element(
            "div",
            { class: "name-field" },
            element("label", { for: id }, "Name"),
            this.input,
            this.hint,
            this.fault,
        );
        this.input.addEventListener("input", () => this.update());
    }

    get name(): string {
        return this.input.value.trim();
    }

    set name(name: string) {
        this.input.value = name;
        this.update();
    }

    /** Another name, or none, is wrong. */
    fail(message: string): void {
        this.fault.textContent = message;
        this.hint.hidden = message !== "";
        this.input.setAttribute("aria-invalid", String(message !== ""));
        if (message) this.input.focus();
    }

    update(): void {
        this.fail("");
        const stem = stemOf(this.input.value);
        this.hint.textContent = stem ? `Makes ${listed(this.files(stem))}` : "In the folder, such as widgets/habits";
    }
}

const listed = (files: string[]): string =>
    files.length < 2 ? (files[0] ?? "") : `${files.slice(0, -1).join(", ")} and ${files.at(-1)}`;

/** A name like the wished one that no widget of the folder has. */
export function freeName(wish: string, files: ProjectFile[]): string {
    const taken = new Set(files.map(({ path }) => path.replace(/(\.model\.json|\.json|\.widget\.toml)$/, "")));
    for (let number = 1; ; number++) {
        const name = number === 1 ? wish : `${wish}-${number}`;
        if (!taken.has(name)) return name;
    }
}
