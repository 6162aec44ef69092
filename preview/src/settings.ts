// SPDX-License-Identifier: MIT

// What the settings beside a document hold, and what was chosen on the page instead.
import type { FileText, ProjectFile, Settings } from "./api";
import { fetchFile } from "./api";
import { announce } from "./dom";
import type { Appearances, FamilyModels, State } from "./state";
import { isZone } from "./zones";

/** What both settings and the page's controls say. */
type Looks = Pick<State, "screen" | "appearances" | "moment" | "timeZone">;

const looksOf = ({ screen, appearances, moment, timeZone }: Looks): Looks => ({
    screen,
    appearances,
    moment,
    timeZone,
});

/** Settings hold from when a document is opened until they are others, and a choice on the page wins over them. */
export class HeldSettings {
    /** What was chosen where no settings held. */
    private readonly usual: Looks;
    private held: Partial<Looks> = {};
    private taken = written(undefined);

    constructor(
        private readonly state: State,
        private readonly shown: () => void,
    ) {
        this.usual = looksOf(state);
    }

    /** Whether settings hold the moment: then no clock runs by itself. */
    get holdsMoment(): boolean {
        return this.held.moment !== undefined;
    }

    choose<Key extends keyof Looks>(key: Key, value: Looks[Key]): void {
        Object.assign(this.state, { [key]: value });
        if (this.held[key] === undefined) this.usual[key] = value;
    }

    /** Takes over what belongs to a document; nothing for one that is no file. */
    take(file: ProjectFile | undefined, models: FamilyModels): void {
        this.taken = written(file);
        if (file?.fault) announce(file.fault);
        this.held = this.looksIn(file?.settings);
        Object.assign(this.state, this.usual, this.held);
        this.state.meant = file?.settings?.families ?? [];
        this.state.background = file?.settings?.background ?? null;
        this.state.models = models;
        this.shown();
    }

    /** Whether others than those that were taken belong to the document now. */
    areOthers(file: ProjectFile | undefined): boolean {
        return written(file) !== this.taken;
    }

    private looksIn(settings: Settings | undefined): Partial<Looks> {
        if (!settings) return {};
        const looks: Partial<Looks> = {};
        const screen = this.screenOf(settings);
        if (screen) looks.screen = screen;
        if (settings.appearance) looks.appearances = settings.appearance satisfies Appearances;
        if (settings.date !== null) looks.moment = settings.date;
        if (settings.timeZone !== null && isZone(settings.timeZone)) looks.timeZone = settings.timeZone;
        return looks;
    }

    private screenOf({ screens: [wanted] }: Settings): State["screen"] | undefined {
        const screen = this.state.project.screens.find(({ name }) => name === wanted);
        if (wanted && !screen) announce(`No widget sizes are known for the settings' screen of ${wanted}`);
        return screen;
    }
}

const written = (file: ProjectFile | undefined): string =>
    JSON.stringify([file?.settings ?? null, file?.models ?? {}, file?.fault ?? null]);

/** The texts of families' own models; those that cannot be read are told, and the widget's own stands in. */
export async function readModels(file: ProjectFile | undefined): Promise<FamilyModels> {
    const families = Object.entries(file?.models ?? {});
    const paths = [...new Set(families.map(([, path]) => path))];
    const read = new Map(
        await Promise.all(paths.map(async (path) => [path, await readModel(path, "A family's model")] as const)),
    );
    const models: FamilyModels = new Map();
    for (const [family, path] of families) {
        const model = read.get(path);
        if (model) models.set(family, model);
    }
    return models;
}

/** A model, and where it lies; one that cannot be read is told. */
export async function readModel(path: string, called: string): Promise<(FileText & { path: string }) | null> {
    try {
        return { path, ...(await fetchFile(path)) };
    } catch (error) {
        announce(`${called}: ${(error as Error).message}`);
        return null;
    }
}
