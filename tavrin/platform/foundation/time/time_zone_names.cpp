// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/time_zone_names.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <vector>

#include <date/tz.h>

#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

struct Abbreviation {
    std::string_view name;
    std::string_view zone;
};

/// In the order of the alphabet. Those that stand for several zones mean the phone's choice ("IST" is India's). The
/// database has some of these names as well, mostly for zones without daylight saving; the abbreviation comes first, so
/// that "EST" is what the clocks of New York show (ours: what the phone does there is not known).
constexpr Abbreviation abbreviations[] = {
    {"ADT", "America/Halifax"},
    {"AKDT", "America/Juneau"},
    {"AKST", "America/Juneau"},
    {"ART", "America/Argentina/Buenos_Aires"},
    {"AST", "America/Halifax"},
    {"BDT", "Asia/Dhaka"},
    {"BRST", "America/Sao_Paulo"},
    {"BRT", "America/Sao_Paulo"},
    {"BST", "Europe/London"},
    {"CAT", "Africa/Harare"},
    {"CDT", "America/Chicago"},
    {"CEST", "Europe/Paris"},
    {"CET", "Europe/Paris"},
    {"CLST", "America/Santiago"},
    {"CLT", "America/Santiago"},
    {"COT", "America/Bogota"},
    {"CST", "America/Chicago"},
    {"EAT", "Africa/Addis_Ababa"},
    {"EDT", "America/New_York"},
    {"EEST", "Europe/Athens"},
    {"EET", "Europe/Athens"},
    {"EST", "America/New_York"},
    {"GMT", "GMT"},
    {"GST", "Asia/Dubai"},
    {"HKT", "Asia/Hong_Kong"},
    {"HST", "Pacific/Honolulu"},
    {"ICT", "Asia/Bangkok"},
    {"IRST", "Asia/Tehran"},
    {"IST", "Asia/Kolkata"},
    {"JST", "Asia/Tokyo"},
    {"KST", "Asia/Seoul"},
    {"MDT", "America/Denver"},
    {"MSD", "Europe/Moscow"},
    {"MSK", "Europe/Moscow"},
    {"MST", "America/Denver"},
    {"NDT", "America/St_Johns"},
    {"NST", "America/St_Johns"},
    {"NZDT", "Pacific/Auckland"},
    {"NZST", "Pacific/Auckland"},
    {"PDT", "America/Los_Angeles"},
    {"PET", "America/Lima"},
    {"PHT", "Asia/Manila"},
    {"PKT", "Asia/Karachi"},
    {"PST", "America/Los_Angeles"},
    {"SGT", "Asia/Singapore"},
    {"TRT", "Europe/Istanbul"},
    {"UTC", "UTC"},
    {"WAT", "Africa/Lagos"},
    {"WEST", "Europe/Lisbon"},
    {"WET", "Europe/Lisbon"},
    {"WIT", "Asia/Jakarta"},
};
static_assert(std::ranges::is_sorted(abbreviations, {}, &Abbreviation::name));

constexpr int mostHours = 18;
constexpr int minutesOfHour = 60;

/// The number that one or two digits write, less than 100; none for anything else.
std::optional<int> shortNumber(std::string_view digits) {
    const bool areDigits = digits.find_first_not_of("0123456789") == std::string_view::npos;
    return areDigits && digits.size() <= 2 ? intFromText<int>(digits) : std::nullopt;
}

std::vector<std::string_view> readNames() {
    std::vector<std::string_view> names;
    try {
        for (const date::time_zone& zone : date::get_tzdb().zones) names.emplace_back(zone.name());
    } catch (const std::exception&) {
        return names;  // no database
    }
    // Also folders of the same zones counted otherwise.
    std::erase_if(names, [](std::string_view name) {
        return name.starts_with("posix/") || name.starts_with("right/") || name == linkToSystemZone;
    });
    std::ranges::transform(abbreviations, std::back_inserter(names), &Abbreviation::name);
    std::ranges::sort(names);
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace

std::optional<std::string_view> zoneOfAbbreviation(std::string_view abbreviation) {
    const auto* const found = std::ranges::lower_bound(abbreviations, abbreviation, {}, &Abbreviation::name);
    if (found == std::end(abbreviations) || found->name != abbreviation) return std::nullopt;
    return found->zone;
}

std::optional<int> minutesFromGMT(std::string_view text) {
    if (!text.starts_with("GMT+") && !text.starts_with("GMT-")) return std::nullopt;
    const int sign = text[3] == '-' ? -1 : 1;
    text.remove_prefix(4);
    std::size_t hourDigits = std::min(text.find(':'), text.size());
    const bool hasColon = hourDigits < text.size();
    if (!hasColon) hourDigits = std::min<std::size_t>(hourDigits, 2);
    std::string_view minuteDigits = text.substr(hourDigits + (hasColon ? 1 : 0));
    if (!hasColon && minuteDigits.empty()) minuteDigits = "00";
    const std::optional<int> hours = shortNumber(text.substr(0, hourDigits));
    const std::optional<int> minutes = shortNumber(minuteDigits);
    if (!hours || !minutes || minuteDigits.size() != 2 || *minutes >= minutesOfHour) return std::nullopt;
    const int total = *hours * minutesOfHour + *minutes;
    if (total > mostHours * minutesOfHour) return std::nullopt;
    return sign * total;
}

std::span<const std::string_view> timeZoneNames() {
    static const std::vector<std::string_view> names = readNames();
    return names;
}

}  // namespace tavrin
