// SPDX-License-Identifier: MIT

// Small helpers over the document.

export function byId<T extends HTMLElement = HTMLElement>(id: string): T {
    const found = document.getElementById(id);
    if (!found) throw new Error(`the page has no #${id}`);
    return found as T;
}

type Attributes = Record<string, string | number | boolean>;

/** Makes an element; attributes that are false are left out, those that are true are empty. */
export function element<K extends keyof HTMLElementTagNameMap>(
    tag: K,
    attributes: Attributes = {},
    ...children: (Node | string)[]
): HTMLElementTagNameMap[K] {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes))
        if (value !== false) made.setAttribute(name, value === true ? "" : String(value));
    made.append(...children);
    return made;
}

/** The focus of a list that is one stop of the tab order moves with the arrow keys. */
export function neighbour(items: HTMLElement[], current: Element | null, key: string): HTMLElement | undefined {
    const at = items.findIndex((item) => item === current);
    const last = items.length - 1;
    const next: Record<string, number> = {
        ArrowRight: Math.min(at + 1, last),
        ArrowDown: Math.min(at + 1, last),
        ArrowLeft: Math.max(at - 1, 0),
        ArrowUp: Math.max(at - 1, 0),
        Home: 0,
        End: last,
    };
    const index = next[key];
    return index === undefined ? undefined : items[index];
}

let announced: HTMLElement | undefined;

/** Shows a sentence at the foot of the page for a while; screen readers read it out. */
export function announce(sentence: string): void {
    announced ??= byId("announcement");
    announced.textContent = sentence;
    announced.classList.add("shown");
    clearTimeout(Number(announced.dataset["timer"]));
    const shown = announced;
    announced.dataset["timer"] = String(setTimeout(() => shown.classList.remove("shown"), 4000));
}
