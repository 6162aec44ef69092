#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/date.h"

namespace date {
class time_zone;
}

namespace tavrin {

/// A time zone of the system's tz database; UTC by default. Cheap to copy, safe to use from several threads.
///
/// The database is opened when the first zone other than UTC is asked for. A machine without one knows only UTC.
class TimeZone {
public:
    /// UTC.
    TimeZone() = default;

    /// The zone the process runs in: the variable `TZ` when it names a zone, else the system's, else UTC.
    [[nodiscard]] static TimeZone current();

    /// The zone of that identifier ("Europe/Madrid", "UTC"), none when there is no such zone. Letter case counts.
    [[nodiscard]] static std::optional<TimeZone> named(std::string_view identifier);

    [[nodiscard]] const std::string& identifier() const;

    /// Seconds to add to UTC for this zone's clock at `date`, daylight saving included; negative west of Greenwich.
    /// Dates outside the years -9999…9999 count as the nearest of them, one that is not a number as 1970.
    [[nodiscard]] double secondsFromUTC(Date date) const;

    friend bool operator==(const TimeZone& a, const TimeZone& b) { return a.identifier() == b.identifier(); }

private:
    TimeZone(const std::string& identifier, const date::time_zone* zone) : identifier_(&identifier), zone_(zone) {}

    // Both are owned by the database, which lives as long as the process, or null: "UTC", no difference from UTC.
    const std::string* identifier_ = nullptr;
    const date::time_zone* zone_ = nullptr;
};

}  // namespace tavrin
