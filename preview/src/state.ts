// SPDX-License-Identifier: MIT

// What the page shows: one object that its parts share.
import type { Appearance, Family, Project, ProjectFile, Screen } from "./api";

export type Appearances = Appearance | "both";

export interface State {
    project: Project;
    files: ProjectFile[];
    screen: Screen;
    appearances: Appearances;
    /** The moment that is drawn, in seconds since 1970. */
    moment: number;
    timeZone: string;
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

export const appearancesShown = (appearances: Appearances): Appearance[] =>
    appearances === "both" ? ["light", "dark"] : [appearances];
