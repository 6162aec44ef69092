// SPDX-License-Identifier: MIT

// Begins a widget: a card for each template, and a name.
import type { Template } from "./api";
import { beginWidget } from "./api";
import { element } from "./dom";
import { NameField, freeName } from "./name_field";
import type { State } from "./state";
import { drawTemplate, templates } from "./templates";

export interface NewWidgetEvents {
    /** Whether another document may be opened. */
    mayGo: () => boolean;
    /** A document was made. */
    made: (path: string) => Promise<void>;
}

export class NewWidget {
    readonly form: HTMLFormElement;
    private readonly cards = element("div", { class: "cards" });
    private readonly field = new NameField((stem) => [`${stem}.json`, `${stem}.model.json`, `${stem}.widget.toml`]);
    /** The name that was proposed; one that was typed stays. */
    private proposed = "";

    /** `others` stand beside the button that makes the widget. */
    constructor(
        private readonly state: State,
        private readonly events: NewWidgetEvents,
        ...others: HTMLElement[]
    ) {
        const submit = element("button", { type: "submit", class: "primary" }, "Make the widget");
        this.form = element(
            "form",
            { class: "new-widget" },
            element("fieldset", {}, element("legend", { class: "visually-hidden" }, "Begin with"), this.cards),
            element(
                "div",
                { class: "naming" },
                this.field.block,
                element("div", { class: "actions" }, ...others, submit),
            ),
        );
        this.form.addEventListener("change", () => this.propose());
        this.form.addEventListener("submit", (event) => {
            event.preventDefault();
            void this.make();
        });
    }

    /** Draws the templates, and proposes a name that is free. */
    async show(): Promise<void> {
        try {
            const list = await templates();
            if (this.cards.childElementCount === 0) this.cards.append(...list.map((each, i) => card(each, i === 0)));
            this.propose();
            const images = [...this.cards.querySelectorAll("img")];
            await Promise.all(list.map((each, i) => images[i] && drawTemplate(each, this.state, images[i])));
        } catch (error) {
            this.field.fail((error as Error).message);
        }
    }

    get chosen(): HTMLInputElement | null {
        return this.cards.querySelector<HTMLInputElement>("input:checked");
    }

    private propose(): void {
        if (!this.chosen || this.field.name !== this.proposed) return;
        this.proposed = freeName(this.chosen.value, this.state.files);
        this.field.name = this.proposed;
    }

    private async make(): Promise<void> {
        if (!this.chosen || !this.events.mayGo()) return;
        try {
            const [document] = await beginWidget(this.field.name, this.chosen.value);
            this.proposed = this.field.name; // the next one is called otherwise
            if (document) await this.events.made(document.path);
        } catch (error) {
            this.field.fail((error as Error).message);
        }
    }
}

function card({ name, summary }: Template, isChosen: boolean): HTMLElement {
    return element(
        "label",
        { class: "card" },
        element("input", { type: "radio", name: "template", value: name, checked: isChosen }),
        element("span", { class: "picture" }, element("img", { alt: "" })),
        element("span", { class: "words" }, element("b", {}, name), " ", element("span", {}, summary)),
    );
}
