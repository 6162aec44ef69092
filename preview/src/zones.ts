// SPDX-License-Identifier: MIT

// Clock arithmetic of time zones, from the browser's own tables.

const formats = new Map<string, Intl.DateTimeFormat>();

function formatOf(zone: string): Intl.DateTimeFormat {
    let format = formats.get(zone);
    if (!format) {
        format = new Intl.DateTimeFormat("en-US", {
            timeZone: zone.replace(/^GMT([+-]\d\d):?(\d\d)$/, "$1:$2"), // as browsers write it
            hourCycle: "h23",
            year: "numeric",
            month: "2-digit",
            day: "2-digit",
            hour: "2-digit",
            minute: "2-digit",
            second: "2-digit",
        });
        formats.set(zone, format);
    }
    return format;
}

/** Seconds since 1970 of what the zone's clock shows, read as if it were UTC. */
export function clockSeconds(moment: number, zone: string): number {
    const parts = new Map(
        formatOf(zone)
            .formatToParts(moment * 1000)
            .map((part) => [part.type, Number(part.value)]),
    );
    const value = (type: Intl.DateTimeFormatPartTypes) => parts.get(type) ?? 0;
    const whole = Date.UTC(
        value("year"),
        value("month") - 1,
        value("day"),
        value("hour"),
        value("minute"),
        value("second"),
    );
    return whole / 1000 + (moment - Math.floor(moment));
}

/** The moment at which the zone's clock shows that; of an hour that comes twice, one of them. */
export function momentOf(clock: number, zone: string): number {
    const guess = clock - (clockSeconds(clock, zone) - clock);
    return guess - (clockSeconds(guess, zone) - clock);
}

export const daySeconds = 86400;

/** "2026-11-21T09:41:00", as a `datetime-local` input has it. */
export function clockText(clock: number): string {
    return new Date(Math.floor(clock) * 1000).toISOString().slice(0, 19);
}

export function clockFromText(text: string): number | null {
    const milliseconds = Date.parse(text + "Z");
    return Number.isNaN(milliseconds) ? null : milliseconds / 1000;
}

export function isZone(name: string): boolean {
    try {
        return formatOf(name) !== undefined;
    } catch {
        return false;
    }
}

export const knownZones = (): string[] => ["UTC", ...Intl.supportedValuesOf("timeZone")];
