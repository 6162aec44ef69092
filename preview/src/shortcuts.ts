// SPDX-License-Identifier: MIT

// Keys that work everywhere on the page, and the list of them.
import { byId, element } from "./dom";

export interface Shortcut {
    keys: string;
    does: string;
    matches: (event: KeyboardEvent) => boolean;
    run: () => void;
}

const isControl = (event: KeyboardEvent): boolean => event.ctrlKey || event.metaKey;

export const control =
    (key: string) =>
    (event: KeyboardEvent): boolean =>
        isControl(event) && !event.altKey && event.key.toLowerCase() === key;
export const alt =
    (key: string) =>
    (event: KeyboardEvent): boolean =>
        event.altKey && !isControl(event) && event.code === key;
export const plain =
    (key: string) =>
    (event: KeyboardEvent): boolean =>
        !isControl(event) && !event.altKey && !event.shiftKey && event.key === key;

const elsewhere: [string, string][] = [
    ["Tab", "to the next part; in an editor too"],
    ["Ctrl-Space", "proposes what may stand there"],
    ["Ctrl-F", "searches in the editor"],
    ["Arrows", "walk through pictures and the tree"],
    ["Enter", "in the tree: to the place in the text"],
];

export function setUpShortcuts(shortcuts: Shortcut[]): void {
    const dialog = byId<HTMLDialogElement>("help");
    const all: Shortcut[] = [
        ...shortcuts,
        { keys: "F1", does: "this list", matches: plain("F1"), run: () => dialog.showModal() },
    ];
    const rows = [...all.map(({ keys, does }): [string, string] => [keys, does]), ...elsewhere];
    byId("shortcuts").append(
        ...rows.flatMap(([keys, does]) => [
            element("dt", {}, ...keys.split("-").map((key) => element("kbd", {}, key))),
            element("dd", {}, does),
        ]),
    );
    byId("help-button").addEventListener("click", () => dialog.showModal());
    dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
    window.addEventListener(
        "keydown",
        (event) => {
            const shortcut = all.find((each) => each.matches(event));
            if (!shortcut || document.querySelector("dialog[open]")) return;
            event.preventDefault();
            shortcut.run();
        },
        { capture: true },
    );
}

const stops = ".cm-content, [tabindex='0'], button:not(:disabled), input, select";

/** Moves the focus to the next part of the page that can have it. */
export function focusNextRegion(): void {
    const stopOf = (region: HTMLElement) =>
        [...region.querySelectorAll<HTMLElement>(stops)].find((stop) => stop.offsetParent !== null);
    const regions = [...document.querySelectorAll<HTMLElement>("[data-region]")].filter(stopOf);
    const at = regions.findLastIndex((region) => region.contains(document.activeElement));
    const next = regions[(at + 1) % regions.length];
    if (next) stopOf(next)?.focus();
}
