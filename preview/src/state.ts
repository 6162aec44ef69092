// SPDX-License-Identifier: MIT

// What the page shows: one object that its parts share.
import type { Appearance, CheckedLooks, Drawing, Family, Project, ProjectFile, Screen } from "./api";

export type Appearances = Appearance | "both";

/** The model that a family has instead of the widget's own. */
export interface FamilyModel {
    path: string;
    text: string;
}
export type FamilyModels = Map<string, FamilyModel>;

export interface State {
    project: Project;
    files: ProjectFile[];
    screen: Screen;
    /** The families that the document is meant for; of none all. */
    meant: string[];
    appearances: Appearances;
    /** The moment that is drawn, in seconds since 1970. */
    moment: number;
    timeZone: string;
    /** What lies behind every widget; null is the platform's own. */
    background: string | null;
    models: FamilyModels;
}

/** Families in the order in which the stage shows them: as they would fill a home screen. */
const order = [
    "systemMedium",
    "systemSmall",
    "accessoryCircular",
    "accessoryRectangular",
    "accessoryInline",
    "systemLarge",
    "systemExtraLarge",
];

export const orderedFamilies = (screen: Screen): Family[] =>
    [...screen.families].sort((a, b) => order.indexOf(a.name) - order.indexOf(b.name));

export const isMeant = (state: State, family: string): boolean =>
    state.meant.length === 0 || state.meant.includes(family);

/** The model that a family is drawn with, where `usual` is the widget's. */
export const modelOf = (state: State, family: string, usual: string | null): string | null =>
    state.models.get(family)?.text ?? usual;

/** A drawing and the looks whose problems are asked for at once; `own` is the model that only these families have. */
export interface Check {
    drawing: Drawing;
    looks: CheckedLooks;
    own: FamilyModel | null;
}

/** The looks whose problems count: those shown of the families that the document is meant for; else the drawing's own. */
export function checksOf(state: State, drawing: Drawing, usual: string | null): Check[] {
    const meant = state.screen.families.map(({ name }) => name).filter((name) => state.meant.includes(name));
    const appearances = meant.length > 0 ? appearancesShown(state.appearances).join(",") : "";
    const byModel = Map.groupBy(meant.length > 0 ? meant : [drawing.family], (name) => state.models.get(name) ?? null);
    return [...byModel].map(([own, names]) => ({
        drawing: { ...drawing, model: own ? own.text : usual },
        looks: { screen: state.screen.name, families: meant.length > 0 ? names.join(",") : "", appearances },
        own,
    }));
}

export const appearancesShown = (appearances: Appearances): Appearance[] =>
    appearances === "both" ? ["light", "dark"] : [appearances];
