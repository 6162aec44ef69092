// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/rfc3339.h"

#include <chrono>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

namespace tavrin {

std::optional<std::string> rfc3339Text(Date date) {
    constexpr double firstYear = -62'167'219'200;
    constexpr double behindLastYear = 253'402'300'800;
    const double seconds = date.secondsSince1970;
    if (!(seconds >= firstYear && seconds < behindLastYear)) return std::nullopt;
    const double whole = std::floor(seconds);
    const std::chrono::sys_seconds time{std::chrono::seconds(static_cast<std::int64_t>(whole))};
    const auto midnight = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day day(midnight);
    const std::chrono::hh_mm_ss clock(time - midnight);
    std::string text = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", static_cast<int>(day.year()),
                                   static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                                   clock.hours().count(), clock.minutes().count(), clock.seconds().count());
    const int milliseconds = static_cast<int>((seconds - whole) * 1000);
    if (milliseconds > 0) text += fmt::format(".{:03}", milliseconds);
    return text + "Z";
}

}  // namespace tavrin
