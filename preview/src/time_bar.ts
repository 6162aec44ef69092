// SPDX-License-Identifier: MIT

// The moment that is drawn: a slider over its day, a field, a time zone, and a clock that can run.
import { byId, element } from "./dom";
import type { HeldSettings } from "./settings";
import type { State } from "./state";
import { clockFromText, clockSeconds, clockText, daySeconds, isZone, knownZones, momentOf } from "./zones";

export class TimeBar {
    private readonly slider = byId<HTMLInputElement>("time-slider");
    private readonly field = byId<HTMLInputElement>("time-field");
    private readonly zone = byId<HTMLInputElement>("time-zone");
    private readonly speed = byId<HTMLSelectElement>("time-speed");
    private readonly button = byId<HTMLButtonElement>("play");
    private running = 0;
    private last = 0;

    constructor(
        private readonly state: State,
        private readonly settings: HeldSettings,
        private readonly moved: () => void,
        private readonly zoneChanged: () => void,
    ) {
        byId("zones").append(...knownZones().map((name) => element("option", { value: name })));
        this.slider.addEventListener("input", () => this.goTo(this.dayBegin() + this.slider.valueAsNumber));
        this.field.addEventListener("change", () => {
            const clock = clockFromText(this.field.value);
            if (clock !== null) this.goTo(clock);
        });
        this.zone.addEventListener("change", () => this.takeZone());
        this.button.addEventListener("click", () => this.toggle());
        byId("now").addEventListener("click", () => this.set(Math.floor(Date.now() / 1000)));
        this.show();
    }

    toggle(): void {
        if (this.running) {
            cancelAnimationFrame(this.running);
            this.running = 0;
        } else {
            this.last = performance.now();
            this.running = requestAnimationFrame((now) => this.tick(now));
        }
        this.button.setAttribute("aria-pressed", String(this.running !== 0));
        this.button.setAttribute("aria-label", this.running ? "Stop the clock" : "Let the clock run");
    }

    private tick(now: number): void {
        // A frame may have begun before the clock was started.
        const seconds = (Math.max(0, now - this.last) / 1000) * Number(this.speed.value);
        this.last = Math.max(now, this.last);
        this.running = requestAnimationFrame((next) => this.tick(next));
        this.set(this.state.moment + seconds);
    }

    private takeZone(): void {
        const isKnown = isZone(this.zone.value);
        this.zone.setAttribute("aria-invalid", String(!isKnown));
        if (!isKnown) return;
        this.settings.choose("timeZone", this.zone.value);
        this.show();
        this.zoneChanged();
    }

    private dayBegin(): number {
        const clock = clockSeconds(this.state.moment, this.state.timeZone);
        return Math.floor(clock / daySeconds) * daySeconds;
    }

    private goTo(clock: number): void {
        this.set(momentOf(clock, this.state.timeZone));
    }

    private set(moment: number): void {
        this.settings.choose("moment", moment);
        this.show();
        this.moved();
    }

    stop(): void {
        if (this.running) this.toggle();
    }

    show(): void {
        const clock = clockSeconds(this.state.moment, this.state.timeZone);
        const text = clockText(clock);
        this.slider.value = String(Math.floor(clock % daySeconds));
        this.slider.setAttribute("aria-valuetext", text.slice(11));
        this.slider.style.setProperty("--part", String((clock % daySeconds) / daySeconds));
        if (document.activeElement !== this.field) this.field.value = text;
        if (document.activeElement !== this.zone) {
            this.zone.value = this.state.timeZone;
            this.zone.setAttribute("aria-invalid", "false");
        }
    }
}
