// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// A moment, in seconds since 1970-01-01 00:00:00 UTC (leap seconds are not counted).
struct Date {
    double secondsSince1970 = 0;

    /// The present moment. The only reading of the clock in the library; everything else is handed a `Date`.
    static Date now();

    /// The moment an RFC 3339 text names ("2026-11-21T07:30:00+01:00"), none when it is not such a text.
    /// A leap second counts as the second after it.
    [[nodiscard]] static std::optional<Date> parseRFC3339(std::string_view text);

    friend bool operator==(const Date&, const Date&) = default;
};

/// What a timer for `date` shows at `now`: the time between them in whole seconds, rounded down when it counts up
/// (`date` has passed) and up when it counts down. "m:ss" below an hour ("12:34"), "h:mm:ss" from then on ("36:59:01").
/// At most 999,999,999 hours; the distance of dates that are no numbers is 0.
[[nodiscard]] std::string timerText(Date date, Date now);

/// When that text becomes another one: after `now`, and infinitely far away where it stays.
[[nodiscard]] Date nextTimerText(Date date, Date now);

}  // namespace tavrin
