// SPDX-License-Identifier: MIT

// One picture of the stage: a family in an appearance.
import type { Appearance, Drawn, Family } from "./api";
import { element } from "./dom";

const kinds: Record<string, string> = {
    accessoryCircular: "circle",
    accessoryRectangular: "rectangle",
    accessoryInline: "inline",
};

export class Tile {
    readonly figure: HTMLElement;
    readonly canvas: HTMLCanvasElement;
    picture: Uint8Array<ArrayBuffer> | null = null;
    /** The number of the change that the picture shows. */
    shown = 0;
    /** From when until just before when the clock changes nothing about it. */
    private valid = { from: 0, until: 0 };
    private readonly highlight: HTMLElement;
    private readonly time: HTMLElement;
    private readonly frame: HTMLElement;
    zoom = 1;

    constructor(
        readonly family: Family,
        readonly appearance: Appearance,
    ) {
        this.canvas = element("canvas");
        this.highlight = element("div", { class: "highlight", hidden: true });
        this.time = element("span", { class: "time" });
        this.frame = element("div", { class: `widget ${kinds[family.name] ?? "system"}` }, this.canvas, this.highlight);
        this.figure = element(
            "figure",
            {
                class: "tile",
                role: "option",
                tabindex: -1,
                "aria-selected": "false",
                "aria-label": `${family.name}, ${appearance}`,
                "data-family": family.name,
                "data-appearance": appearance,
            },
            this.frame,
            element("figcaption", {}, element("b", {}, family.name), ` ${family.width} × ${family.height} `, this.time),
        );
    }

    /** Whether the widget is meant for the family; else the picture steps back. */
    isMeant = true;

    /** `model` is the path of the family's own model, empty where it has none. */
    mark(isMeant: boolean, model: string): void {
        this.isMeant = isMeant;
        this.figure.classList.toggle("not-meant", !isMeant);
        const told = isMeant ? "" : "By its settings the widget is not meant for this family";
        this.figure.title = model ? `By its settings drawn with ${model}` : told;
        this.figure.dataset["model"] = model;
    }

    get rounded(): boolean {
        return this.family.name.startsWith("system");
    }

    resize(zoom: number): void {
        this.zoom = zoom;
        this.frame.style.width = `${this.family.width * zoom}px`;
        this.frame.style.height = `${this.family.height * zoom}px`;
    }

    async show(drawn: Drawn, moment: number, change: number): Promise<void> {
        this.figure.classList.toggle("failed", drawn.failure !== null);
        if (drawn.picture) {
            const bitmap = await createImageBitmap(new Blob([drawn.picture], { type: "image/png" }));
            this.canvas.width = bitmap.width;
            this.canvas.height = bitmap.height;
            this.canvas.getContext("bitmaprenderer")?.transferFromImageBitmap(bitmap);
            this.picture = drawn.picture;
            this.time.textContent = `· ${drawn.milliseconds.toFixed(1)} ms`;
        }
        this.valid = { from: moment, until: drawn.failure ? moment : (drawn.validUntil ?? Infinity) };
        this.keep(change);
    }

    /** A change has left the picture as it is. */
    keep(change: number): void {
        this.shown = change;
        this.figure.dataset["change"] = String(change);
    }

    isValidAt(moment: number): boolean {
        return this.valid.from <= moment && moment < this.valid.until;
    }

    /** Outlines a frame in points, or nothing. */
    outline(frame: readonly [number, number, number, number] | null): void {
        this.highlight.hidden = frame === null;
        if (!frame) return;
        const [x, y, width, height] = frame.map((length) => length * this.zoom) as [number, number, number, number];
        this.highlight.style.transform = `translate(${x}px, ${y}px)`;
        this.highlight.style.width = `${width}px`;
        this.highlight.style.height = `${height}px`;
    }

    /** The point of the widget under the pointer. */
    pointAt(event: MouseEvent): { x: number; y: number } {
        const box = this.frame.getBoundingClientRect();
        return { x: (event.clientX - box.left) / this.zoom, y: (event.clientY - box.top) / this.zoom };
    }

    isVisible(within: DOMRect): boolean {
        const box = this.figure.getBoundingClientRect();
        return box.bottom > within.top && box.top < within.bottom;
    }
}
