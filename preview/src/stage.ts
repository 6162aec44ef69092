// SPDX-License-Identifier: MIT

// The widget in every family, light and dark: keeps all pictures up to date, the selected one first.
import type { Drawing, Drawn } from "./api";
import { draw } from "./api";
import { element, neighbour } from "./dom";
import type { Drawable } from "./sources";
import type { State } from "./state";
import { appearancesShown, isMeant, modelOf, orderedFamilies } from "./state";
import { Tile } from "./tile";

const margin = 48;
const atOnce = 2;
/** How long a drawing of texts that have changed may still take: pictures keep coming while one types. */
const lastMilliseconds = 300;

/** A drawing that the server works on. */
interface Work {
    tile: Tile;
    drawing: Drawing;
    control: AbortController;
    isGivenUp: boolean;
}

export interface StageEvents {
    /** The selected picture was drawn, or could not be. */
    drawn: (drawn: Drawn, drawing: Drawing) => void;
    failed: (error: Error) => void;
    hovered: (point: { x: number; y: number } | null) => void;
    picked: (point: { x: number; y: number }) => void;
}

export class Stage {
    tiles: Tile[] = [];
    selected: Tile | null = null;
    private change = 0;
    /** The last change that was not the clock's alone. */
    private lastOther = 0;
    private zoom = 0;
    /** The screen and the appearances that the tiles are for. */
    private built = "";
    private isOpening = false;
    private selectedInFlight = false;
    /** Whether the selected picture is on its way to the screen; the others must not hold it up. */
    private selectedIsPainted = true;
    private inFlight = new Set<Tile>();
    private works = new Set<Work>();

    constructor(
        private readonly parent: HTMLElement,
        private readonly state: State,
        private readonly source: () => Drawable | null,
        private readonly events: StageEvents,
    ) {
        parent.addEventListener("keydown", (event) => this.moveFocus(event));
        parent.addEventListener("scroll", () => this.work(), { passive: true });
        new ResizeObserver(() => this.resize()).observe(parent);
    }

    /** Makes the tiles anew: for another screen or appearance. */
    build(): void {
        const before = this.selected;
        this.tiles = [];
        const columns = appearancesShown(this.state.appearances).map((appearance) => {
            const tiles = orderedFamilies(this.state.screen).map((family) => new Tile(family, appearance));
            this.tiles.push(...tiles);
            const groups = [...Map.groupBy(tiles, (tile) => groupOf(tile.family.name))].map(([name, members]) =>
                element("div", { class: `group ${name}` }, ...members.map((tile) => tile.figure)),
            );
            return element("div", { class: `wallpaper ${appearance}`, role: "presentation" }, ...groups);
        });
        this.parent.replaceChildren(...columns);
        for (const tile of this.tiles) this.listen(tile);
        this.mark(this.choice(before));
        this.built = this.wanted;
        this.zoom = 0;
        this.resize();
    }

    /** The tile to select: like the one before, but of a family that a document is meant for when it is opened. */
    private choice(before: Tile | null): Tile | null {
        const like = before ?? this.tiles[0];
        const stays = like && (!this.isOpening || isMeant(this.state, like.family.name));
        const family = stays ? like.family.name : this.state.meant[0];
        const tiles = this.tiles.filter((tile) => tile.family.name === family);
        this.isOpening = false;
        return tiles.find(({ appearance }) => appearance === before?.appearance) ?? tiles[0] ?? this.tiles[0] ?? null;
    }

    /** With the next update another document is shown. */
    opening(): void {
        this.isOpening = true;
    }

    private get wanted(): string {
        return `${this.state.screen.name} ${this.state.appearances}`;
    }

    /** Something has changed, be it the screen or the appearances. */
    update(): void {
        const before = this.selected?.family.name;
        if (this.wanted !== this.built) {
            this.build();
        } else {
            if (this.isOpening) this.mark(this.choice(this.selected));
            this.invalidate();
        }
        if (this.selected?.family.name !== before) this.selected?.figure.scrollIntoView({ block: "nearest" });
    }

    /** Something that is drawn has changed. */
    invalidate(): void {
        for (const tile of this.tiles) {
            const { name } = tile.family;
            tile.mark(isMeant(this.state, name), this.state.models.get(name)?.path ?? "");
        }
        this.lastOther = this.change + 1;
        this.moveClock();
    }

    /** The moment that is drawn has changed, and nothing else. */
    moveClock(): void {
        this.change++;
        this.parent.dataset["change"] = String(this.change);
        this.giveUpOld();
        this.work();
    }

    /** Lets no drawing of an older text, or for a tile that has gone, take much longer. */
    private giveUpOld(): void {
        const source = this.source();
        for (const work of this.works) {
            const { document, model, family } = work.drawing;
            const isOfText = source?.document === document && modelOf(this.state, family, source.model) === model;
            const isWanted = isOfText && this.tiles.includes(work.tile);
            if (isWanted || work.isGivenUp) continue;
            work.isGivenUp = true;
            setTimeout(() => work.control.abort(), lastMilliseconds);
        }
    }

    select(tile: Tile): void {
        if (tile === this.selected) return;
        this.mark(tile);
        tile.shown = -1; // its tree is wanted too
        this.work();
    }

    private mark(tile: Tile | null): void {
        for (const other of this.tiles) {
            other.figure.setAttribute("aria-selected", String(other === tile));
            other.figure.tabIndex = other === tile ? 0 : -1;
            if (other !== tile) other.outline(null);
        }
        this.selected = tile;
    }

    private listen(tile: Tile): void {
        tile.figure.addEventListener("focus", () => this.select(tile));
        tile.figure.addEventListener("click", (event) => {
            this.select(tile);
            this.events.picked(tile.pointAt(event));
        });
        tile.figure.addEventListener("pointermove", (event) => {
            if (tile === this.selected) this.events.hovered(tile.pointAt(event));
        });
        tile.figure.addEventListener("pointerleave", () => this.events.hovered(null));
    }

    private moveFocus(event: KeyboardEvent): void {
        const figures = this.tiles.map((tile) => tile.figure);
        const next = neighbour(figures, document.activeElement, event.key);
        if (!next) return;
        event.preventDefault();
        next.focus();
    }

    /** Shrinks the widgets where the widest one has no room. */
    private resize(): void {
        if (this.parent.hidden) return;
        const columns = appearancesShown(this.state.appearances).length;
        const widest = Math.max(...this.tiles.map((tile) => tile.family.width), 1);
        const isStacked = this.parent.clientWidth / columns < Math.min(widest, 300) + margin;
        this.parent.classList.toggle("stacked", isStacked);
        const room = this.parent.clientWidth / (isStacked ? 1 : columns) - margin;
        const zoom = Math.max(0.2, Math.min(1, room / widest));
        if (zoom === this.zoom) return this.work();
        this.zoom = zoom;
        for (const tile of this.tiles) tile.resize(zoom);
        this.invalidate();
    }

    /** Draws what is out of date: the selected picture alone, then what is seen of the others. */
    private work(): void {
        const { selected } = this;
        const source = this.source();
        for (const tile of this.tiles)
            if (tile.shown >= this.lastOther && tile.isValidAt(this.state.moment)) tile.keep(this.change);
        if (this.selectedInFlight || !source) return;
        if (selected && selected.shown !== this.change) {
            void this.drawSelected(selected, source);
            return;
        }
        if (!this.selectedIsPainted) return;
        const seen = this.parent.getBoundingClientRect();
        for (const tile of this.tiles) {
            if (this.inFlight.size >= atOnce) return;
            if (tile.shown !== this.change && !this.inFlight.has(tile) && tile.isVisible(seen))
                void this.drawOther(tile, source);
        }
    }

    /** Draws what is out of date and not seen. The selected picture is always under way by itself. */
    async drawUnseen(): Promise<void> {
        const source = this.source();
        if (!source) return;
        for (const tile of this.tiles) {
            if (tile === this.selected || tile.shown === this.change) continue;
            await this.drawTile(tile, this.drawingOf(tile, source));
        }
    }

    private async drawSelected(tile: Tile, source: Drawable): Promise<void> {
        this.selectedInFlight = true;
        const drawing = this.drawingOf(tile, source);
        const drawn = await this.drawTile(tile, drawing);
        this.selectedInFlight = false;
        this.selectedIsPainted = false;
        this.work(); // what has come meanwhile
        await painted();
        this.selectedIsPainted = true;
        if (drawn && tile === this.selected) this.events.drawn(drawn, drawing);
        this.work();
    }

    private async drawOther(tile: Tile, source: Drawable): Promise<void> {
        this.inFlight.add(tile);
        await this.drawTile(tile, this.drawingOf(tile, source));
        this.inFlight.delete(tile);
        this.work();
    }

    private drawingOf(tile: Tile, source: Drawable): Drawing {
        return {
            ...source,
            model: modelOf(this.state, tile.family.name, source.model),
            family: tile.family.name,
            width: tile.family.width,
            height: tile.family.height,
            scale: Math.min(8, Math.max(0.25, devicePixelRatio * tile.zoom)),
            appearance: tile.appearance,
            date: this.state.moment,
            timeZone: this.state.timeZone,
            rounded: tile.rounded,
            background: this.state.background,
        };
    }

    private async drawTile(tile: Tile, drawing: Drawing): Promise<Drawn | null> {
        const { change } = this;
        const work = { tile, drawing, control: new AbortController(), isGivenUp: false };
        this.works.add(work);
        try {
            const drawn = await draw(drawing, work.control.signal);
            await tile.show(drawn, drawing.date, change);
            return drawn;
        } catch (error) {
            tile.shown = change; // asked again with the next change
            if (!work.isGivenUp) this.events.failed(error as Error);
            return null;
        } finally {
            this.works.delete(work);
        }
    }
}

/** Resolves when the next frame has been painted. */
const painted = () => new Promise<void>((resolve) => requestAnimationFrame(() => setTimeout(resolve)));

function groupOf(family: string): string {
    if (family === "accessoryCircular" || family === "accessoryRectangular") return "accessories";
    return family;
}
