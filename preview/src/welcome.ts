// SPDX-License-Identifier: MIT

// Where a widget begins: in place of the stage while there is no document, and in a dialog later.
import { byId, element } from "./dom";
import type { NewWidgetEvents } from "./new_widget";
import { NewWidget } from "./new_widget";
import type { State } from "./state";

export class Welcome {
    private readonly dialog = byId<HTMLDialogElement>("new-dialog");
    private readonly inPlace: NewWidget;
    private readonly inDialog: NewWidget;

    constructor(state: State, events: NewWidgetEvents) {
        const cancel = element("button", { type: "button" }, "Cancel");
        cancel.addEventListener("click", () => this.dialog.close());
        const made = async (path: string): Promise<void> => {
            this.dialog.close();
            await events.made(path);
        };
        this.inPlace = new NewWidget(state, events);
        this.inDialog = new NewWidget(state, { ...events, made }, cancel);
        byId("welcome").append(this.inPlace.form);
        this.dialog.append(this.inDialog.form);
        byId("new").addEventListener("click", () => this.open());
    }

    open(): void {
        if (!this.dialog.open) this.dialog.showModal();
        void this.inDialog.show();
    }

    /** Shows the stage, or what stands there while there is nothing to show. */
    update(isEmpty: boolean): void {
        const welcome = byId("welcome");
        if (welcome.hidden === !isEmpty) return;
        welcome.hidden = !isEmpty;
        document.querySelector("main")?.classList.toggle("empty", isEmpty);
        for (const id of ["stage", "time-bar"]) byId(id).hidden = isEmpty;
        if (isEmpty) void this.inPlace.show();
    }
}
