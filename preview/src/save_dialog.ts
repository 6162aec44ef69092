// SPDX-License-Identifier: MIT

// Asks for the name of what came from no file, and saves it.
import { byId, element } from "./dom";
import { NameField } from "./name_field";

export interface Saving {
    title: string;
    /** The name that is proposed. */
    name: string;
    files: (stem: string) => string[];
    save: (name: string) => Promise<void>;
}

export class SaveDialog {
    private readonly dialog = byId<HTMLDialogElement>("save-dialog");
    private readonly field = new NameField((stem) => this.saving?.files(stem) ?? []);
    private saving: Saving | null = null;

    constructor() {
        const cancel = element("button", { type: "button" }, "Cancel");
        const form = element(
            "form",
            {},
            this.field.block,
            element(
                "div",
                { class: "actions" },
                cancel,
                element("button", { type: "submit", class: "primary" }, "Save"),
            ),
        );
        this.dialog.append(form);
        cancel.addEventListener("click", () => this.close());
        form.addEventListener("submit", (event) => {
            event.preventDefault();
            void this.save();
        });
    }

    open(saving: Saving): void {
        if (this.dialog.open) return;
        this.saving = saving;
        byId("save-title").textContent = saving.title;
        this.field.name = saving.name;
        this.dialog.showModal();
        this.field.input.select();
    }

    close(): void {
        this.dialog.close();
    }

    private async save(): Promise<void> {
        try {
            await this.saving?.save(this.field.name);
            this.close();
        } catch (error) {
            this.field.fail((error as Error).message);
        }
    }
}
