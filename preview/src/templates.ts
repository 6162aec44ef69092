// SPDX-License-Identifier: MIT

// What a widget can begin with, and pictures of it.
import type { Appearance, Drawing, Template } from "./api";
import { draw, fetchTemplates } from "./api";
import type { State } from "./state";

/** The room of a card's picture, in points. */
const room = { width: 208, height: 112 };

let asked: Promise<Template[]> | null = null;

/** Asks once; again where that failed. */
export function templates(): Promise<Template[]> {
    asked ??= fetchTemplates().catch((error: unknown) => {
        asked = null;
        throw error;
    });
    return asked;
}

/** A template in the first family that it is meant for; null where it cannot be drawn. */
function drawingOf({ document, model, settings }: Template, state: State, appearance: Appearance): Drawing | null {
    const family = state.screen.families.find(({ name }) => name === settings.families[0]);
    if (!family) return null;
    const zoom = Math.min(1, room.width / family.width, room.height / family.height);
    return {
        path: null,
        document,
        model,
        family: family.name,
        width: family.width,
        height: family.height,
        scale: Math.min(8, zoom * devicePixelRatio),
        appearance,
        date: settings.date ?? state.moment,
        timeZone: settings.timeZone ?? state.timeZone,
        rounded: true,
        background: settings.background,
    };
}

/** Shows a template in an image, at the size of a card's picture. */
export async function drawTemplate(template: Template, state: State, image: HTMLImageElement): Promise<void> {
    const appearance = matchMedia("(prefers-color-scheme: dark)").matches ? "dark" : "light";
    const drawing = drawingOf(template, state, appearance);
    if (!drawing) return;
    const { picture } = await draw(drawing, new AbortController().signal);
    if (!picture) return;
    const before = image.src;
    image.width = Math.round((drawing.width * drawing.scale) / devicePixelRatio);
    image.src = URL.createObjectURL(new Blob([picture], { type: "image/png" }));
    if (before) URL.revokeObjectURL(before);
}
