// SPDX-License-Identifier: MIT

// The header's choice of a screen and of appearances.
import { byId, element } from "./dom";
import type { HeldSettings } from "./settings";
import type { Appearances, State } from "./state";

export class LookControls {
    private readonly screen = byId<HTMLSelectElement>("screen");
    private readonly radios = [...document.querySelectorAll<HTMLInputElement>("input[name=appearance]")];

    constructor(
        private readonly state: State,
        settings: HeldSettings,
        changed: () => void,
    ) {
        const { screens } = state.project;
        this.screen.append(...screens.map(({ name }) => element("option", { value: name }, name.replace("x", " × "))));
        this.screen.addEventListener("change", () => {
            settings.choose("screen", screens.find(({ name }) => name === this.screen.value) ?? state.screen);
            changed();
        });
        for (const radio of this.radios)
            radio.addEventListener("change", () => {
                settings.choose("appearances", radio.value as Appearances);
                changed();
            });
        this.show();
    }

    show(): void {
        this.screen.value = this.state.screen.name;
        for (const radio of this.radios) radio.checked = radio.value === this.state.appearances;
    }
}
