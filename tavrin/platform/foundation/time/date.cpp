// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/date.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>

#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

using namespace std::chrono_literals;

/// Takes fields off the front of an RFC 3339 text; once something is missing, `ok` stays false.
struct Reader {
    std::string_view rest;
    bool ok = true;

    int number(std::size_t digits, int highest) {
        int value = 0;
        for (std::size_t i = 0; ok && i < digits; ++i) {
            ok = i < rest.size() && isDigit(rest[i]);
            if (ok) value = value * 10 + (rest[i] - '0');
        }
        ok = ok && value <= highest;
        if (ok) rest.remove_prefix(digits);
        return value;
    }

    char oneOf(std::string_view characters) {
        ok = ok && !rest.empty() && characters.find(rest.front()) != std::string_view::npos;
        if (!ok) return '\0';
        const char taken = rest.front();
        rest.remove_prefix(1);
        return taken;
    }

    double fraction() {
        if (!ok || !rest.starts_with('.')) return 0;
        std::size_t length = 1;
        while (length < rest.size() && isDigit(rest[length])) ++length;
        const std::optional<double> value = doubleFromText(rest.substr(0, length));
        ok = value.has_value();
        rest.remove_prefix(length);
        return value.value_or(0);
    }

    std::chrono::minutes offset() {
        const char sign = oneOf("Zz+-");
        if (sign != '+' && sign != '-') return 0min;
        const std::chrono::hours hours(number(2, 23));
        oneOf(":");
        const std::chrono::minutes minutes(number(2, 59));
        return sign == '-' ? -(hours + minutes) : hours + minutes;
    }
};

/// Leap seconds are added only behind the last second of a month, in UTC.
bool isStartOfMonth(std::chrono::sys_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    return time == day && std::chrono::year_month_day(day).day() == std::chrono::day(1);
}

constexpr double longestTimer = 999'999'999.0 * 3600 + 3599;

std::int64_t shownSeconds(Date date, Date now) {
    const double left = date.secondsSince1970 - now.secondsSince1970;
    const double whole = left > 0 ? std::ceil(left) : std::floor(-left);
    return static_cast<std::int64_t>(std::isnan(whole) ? 0 : std::min(whole, longestTimer));
}

}  // namespace

Date Date::now() {
    const std::chrono::duration<double> seconds = std::chrono::system_clock::now().time_since_epoch();
    return {seconds.count()};
}

std::optional<Date> Date::parseRFC3339(std::string_view text) {
    Reader reader{text};
    const std::chrono::year year(reader.number(4, 9999));
    reader.oneOf("-");
    const std::chrono::month month(static_cast<unsigned>(reader.number(2, 12)));
    reader.oneOf("-");
    const std::chrono::day day(static_cast<unsigned>(reader.number(2, 31)));
    reader.oneOf("Tt");
    const std::chrono::hours hours(reader.number(2, 23));
    reader.oneOf(":");
    const std::chrono::minutes minutes(reader.number(2, 59));
    reader.oneOf(":");
    const std::chrono::seconds seconds(reader.number(2, 60));
    const double fraction = reader.fraction();
    const std::chrono::minutes offset = reader.offset();
    const std::chrono::year_month_day date(year, month, day);
    if (!reader.ok || !reader.rest.empty() || !date.ok()) return std::nullopt;

    const std::chrono::sys_seconds time = std::chrono::sys_days(date) + hours + minutes + seconds - offset;
    if (seconds == 60s && !isStartOfMonth(time)) return std::nullopt;
    return Date{static_cast<double>(time.time_since_epoch().count()) + fraction};
}

std::string timerText(Date date, Date now) {
    const std::int64_t seconds = shownSeconds(date, now);
    const auto twoDigits = [](std::int64_t value) { return (value < 10 ? "0" : "") + toText(value); };
    const std::int64_t minutes = seconds / 60;
    const std::string tail = ":" + twoDigits(seconds % 60);
    if (minutes < 60) return toText(minutes) + tail;
    return toText(minutes / 60) + ":" + twoDigits(minutes % 60) + tail;
}

Date nextTimerText(Date date, Date now) {
    const auto shown = static_cast<double>(shownSeconds(date, now));
    if (date.secondsSince1970 > now.secondsSince1970) return {date.secondsSince1970 - (shown - 1)};
    const bool stays = !(shown < longestTimer) || !(date.secondsSince1970 <= now.secondsSince1970);
    return {stays ? std::numeric_limits<double>::infinity() : date.secondsSince1970 + shown + 1};
}

}  // namespace tavrin
