// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/time/date.h"

namespace date {
class time_zone;
}

namespace tavrin {

/// A time zone of the system's tz database, or one that is always as far from UTC; UTC by default. Safe to use from
/// several threads.
///
/// The database is opened when its first zone is asked for. A machine without one knows only UTC and what is counted
/// from it.
class TimeZone {
public:
    /// UTC.
    TimeZone() = default;

    /// The zone the process runs in: the variable `TZ` when it names a zone, else the system's, else UTC.
    [[nodiscard]] static TimeZone current();

    /// The zone of that name, none when there is no such zone. A name is an abbreviation that the phone knows ("EST":
    /// the zone with its daylight saving, here "America/New_York"), one of the database ("Europe/Madrid"), or "GMT"
    /// with a sign and hours, or hours and minutes ("GMT+8", "GMT-0330", "GMT-3:30"), up to 18 hours. Letter case
    /// counts.
    [[nodiscard]] static std::optional<TimeZone> named(std::string_view name);

    /// The name in the database, or "GMT+0800" and the like.
    [[nodiscard]] const std::string& identifier() const { return identifier_; }

    /// Seconds to add to UTC for this zone's clock at `date`, daylight saving included; negative west of Greenwich.
    /// Dates outside the years -9999…9999 count as the nearest of them, one that is not a number as 1970.
    [[nodiscard]] double secondsFromUTC(Date date) const;

    friend bool operator==(const TimeZone& a, const TimeZone& b) { return a.identifier_ == b.identifier_; }

private:
    TimeZone(std::string identifier, const date::time_zone* zone, int minutes = 0)
        : identifier_(std::move(identifier)), zone_(zone), minutes_(minutes) {}

    static std::optional<TimeZone> ofDatabase(std::string_view identifier);

    std::string identifier_ = "UTC";
    // Owned by the database, which lives as long as the process, or null: always so many minutes from UTC.
    const date::time_zone* zone_ = nullptr;
    int minutes_ = 0;
};

}  // namespace tavrin
