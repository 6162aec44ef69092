// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/time_zone.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <system_error>

#include <date/tz.h>
#include <fmt/format.h>

#include "tavrin/platform/foundation/time/time_zone_names.h"

namespace tavrin {
namespace {

using date::sys_days;
using date::sys_seconds;
using date::year_month_day;

/// Zones known without the database, whose first use takes milliseconds.
constexpr std::array<std::string_view, 3> namesOfUTC{"UTC", "GMT", "Etc/UTC"};

/// "GMT", or "GMT+0530" and the like.
std::string identifierOf(int minutesFromGMT) {
    if (minutesFromGMT == 0) return "GMT";
    constexpr int minutesOfHour = 60;
    const int minutes = std::abs(minutesFromGMT);
    return fmt::format("GMT{}{:02}{:02}", minutesFromGMT < 0 ? '-' : '+', minutes / minutesOfHour,
                       minutes % minutesOfHour);
}

/// What the system's zone is called, as its link into the database says; empty when that is not how it is set.
std::string linkedSystemZone() {
    constexpr std::string_view database = "/zoneinfo/";
    std::error_code error;
    const std::string target = std::filesystem::read_symlink("/etc/localtime", error).string();
    const std::size_t found = target.find(database);
    return error || found == std::string::npos ? std::string() : target.substr(found + database.size());
}

/// The last year whose changes the database lists one by one.
constexpr date::year lastListedYear{2037};

/// The same moment of the latest listed year in which that day falls on the same weekday: daylight saving goes by
/// weekdays.
sys_seconds inListedYears(sys_seconds time) {
    const sys_days day = date::floor<date::days>(time);
    const year_month_day date(day);
    for (date::year year = lastListedYear;; --year) {
        const sys_days candidate = year_month_day(year, date.month(), date.day());  // 29 February may become 1 March
        if (date::weekday(candidate) == date::weekday(day)) return time - day + candidate;
    }
}

std::chrono::seconds offsetOf(const date::time_zone& zone, sys_seconds time) {
    const date::sys_info info = zone.get_info(time);
    const bool stillChanges = year_month_day(date::floor<date::days>(info.begin)).year() == lastListedYear;
    const bool isListed = time < sys_days((lastListedYear + date::years(1)) / date::January / 1);
    return isListed || !stillChanges ? info.offset : zone.get_info(inListedYears(time)).offset;
}

sys_seconds secondsOf(Date date) {
    constexpr double earliest = -377'705'116'800;  // -9999-01-01
    constexpr double latest = 253'402'300'799;     // 9999-12-31, the last second
    const double seconds = std::isnan(date.secondsSince1970) ? 0 : date.secondsSince1970;
    return sys_seconds(std::chrono::seconds(std::llround(std::floor(std::clamp(seconds, earliest, latest)))));
}

}  // namespace

TimeZone TimeZone::current() {
    if (const char* variable = std::getenv("TZ")) {
        const std::string_view identifier = variable;
        if (const auto zone = named(identifier.substr(identifier.starts_with(':')))) return *zone;
    }
    if (const auto zone = named(linkedSystemZone())) return *zone;
    try {
        const date::time_zone* const zone = date::current_zone();
        return {zone->name(), zone};
    } catch (const std::exception&) {
        return {};
    }
}

std::optional<TimeZone> TimeZone::named(std::string_view name) {
    if (const auto zone = zoneOfAbbreviation(name)) return ofDatabase(*zone);
    if (const auto minutes = minutesFromGMT(name)) return TimeZone(identifierOf(*minutes), nullptr, *minutes);
    return ofDatabase(name);
}

std::optional<TimeZone> TimeZone::ofDatabase(std::string_view identifier) {
    if (std::ranges::find(namesOfUTC, identifier) != namesOfUTC.end())
        return TimeZone(std::string(identifier), nullptr);
    if (identifier.empty() || identifier == linkToSystemZone) return std::nullopt;
    try {
        const date::time_zone* const zone = date::locate_zone(identifier);
        zone->get_info(sys_seconds());  // reads the zone's file, so that nothing can fail later
        return TimeZone(zone->name(), zone);
    } catch (const std::exception&) {
        return std::nullopt;  // no such zone, or no database
    }
}

double TimeZone::secondsFromUTC(Date date) const {
    if (!zone_) return minutes_ * 60.0;
    return static_cast<double>(offsetOf(*zone_, secondsOf(date)).count());
}

}  // namespace tavrin
