// SPDX-License-Identifier: MIT

// What the page shows: one object that its parts share.
import type { Appearance, CheckedLooks, Family, Project, ProjectFile, Screen } from "./api";

export type Appearances = Appearance | "both";

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

/** The looks whose problems count: those shown of the families that the document is meant for; else the selected one. */
export function checkedLooks(state: State): CheckedLooks {
    const families = state.screen.families.map(({ name }) => name).filter((name) => state.meant.includes(name));
    const appearances = families.length > 0 ? appearancesShown(state.appearances) : [];
    return { screen: state.screen.name, families: families.join(","), appearances: appearances.join(",") };
}

export const appearancesShown = (appearances: Appearances): Appearance[] =>
    appearances === "both" ? ["light", "dark"] : [appearances];
