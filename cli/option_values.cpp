// SPDX-License-Identifier: MIT
#include "cli/option_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>

#include "cli/options.h"
#include "cli/suggestion.h"
#include "cli/usage_error.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

[[noreturn]] void fail(std::string_view option, std::string_view wanted, std::string_view value,
                       std::string_view hint = {}) {
    throw UsageError(std::string(option) + " takes " + std::string(wanted) + ", not '" + std::string(value) + "'" +
                     std::string(hint));
}

std::optional<double> positiveNumber(std::string_view text) {
    if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
    const std::optional<double> number = doubleFromText(text);
    return number && std::isfinite(*number) && *number > 0 ? number : std::nullopt;
}

std::string sizeText(Size size) { return shortNumber(size.width) + "x" + shortNumber(size.height); }

std::vector<Size> screensThatHave(WidgetFamily family) {
    std::vector<Size> screens(knownScreens().begin(), knownScreens().end());
    std::erase_if(screens, [family](Size screen) { return !widgetSize(family, screen); });
    return screens;
}

}  // namespace

std::string shortNumber(double number) {
    const auto whole = exactInteger(number);
    return whole ? tavrin::toText(*whole) : tavrin::toText(number);
}

std::size_t readWord(std::string_view option, std::string_view value, std::span<const std::string_view> words) {
    const auto found = std::ranges::find(words, value);
    if (found == words.end()) fail(option, listed(words), value, suggestion(value, words));
    return static_cast<std::size_t>(found - words.begin());
}

std::filesystem::path readFolder(std::string_view option, std::string_view value) {
    if (value.empty()) fail(option, "the name of a folder", value);
    return value;
}

Size readSize(std::string_view option, std::string_view value) {
    const std::size_t cross = std::min(value.find('x'), value.size());
    const auto width = positiveNumber(value.substr(0, cross));
    const auto height = positiveNumber(value.substr(std::min(cross + 1, value.size())));
    if (!width || !height) fail(option, "a width and a height such as 338x158", value);
    return {*width, *height};
}

double readUpTo100(std::string_view option, std::string_view value) {
    const auto number = positiveNumber(value);
    if (!number || *number > 100) fail(option, "a number above 0 and up to 100", value);
    return *number;
}

double readSeconds(std::string_view option, std::string_view value) {
    const auto seconds = positiveNumber(value);
    if (!seconds) fail(option, "a positive number of seconds", value);
    return *seconds;
}

std::uint64_t readCount(std::string_view option, std::string_view value) {
    const auto count = intFromText<std::uint64_t>(value);
    if (!count || *count == 0) fail(option, "a positive whole number", value);
    return *count;
}

int readQuality(std::string_view option, std::string_view value) {
    const auto quality = intFromText<int>(value);
    if (!quality || *quality < 1 || *quality > 100) fail(option, "a whole number from 1 to 100", value);
    return *quality;
}

std::pair<Date, Date> readMoments(std::string_view option, std::string_view value) {
    constexpr std::string_view wanted =
        "two moments such as 2026-03-01T09:41:00Z..2026-03-01T09:42:00Z, the earlier one first";
    const std::size_t dots = std::min(value.find(".."), value.size());
    const auto first = Date::parseRFC3339(value.substr(0, dots));
    const auto last = Date::parseRFC3339(value.substr(std::min(dots + 2, value.size())));
    if (!first || !last || last->secondsSince1970 < first->secondsSince1970) fail(option, wanted, value);
    return {*first, *last};
}

std::uint16_t readPort(std::string_view option, std::string_view value) {
    std::uint16_t port = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, port);
    if (error != std::errc{} || stop != end) fail(option, "a number from 0 to 65535", value);
    return port;
}

Date readDate(std::string_view option, std::string_view value) {
    const auto date = Date::parseRFC3339(value);
    if (!date) fail(option, "a date and time such as 2026-03-01T09:41:00Z", value);
    return *date;
}

TimeZone readTimeZone(std::string_view option, std::string_view value) {
    const auto zone = TimeZone::named(value);
    if (!zone) fail(option, "the name of a time zone such as Europe/Madrid, CET or GMT+2", value);
    return *zone;
}

WidgetBackground readBackground(std::string_view option, std::string_view value) {
    if (value == "auto") return {};
    if (value == "none") return {WidgetBackground::Kind::none};
    const std::string_view digits = value.substr(value.starts_with('#') ? 1 : 0);
    const char* const end = digits.data() + digits.size();
    unsigned number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number, 16);
    if (digits.size() != 6 || error != std::errc{} || stop != end)
        fail(option, "auto, none or a colour of six hexadecimal digits such as #FF9500", value);
    const auto channel = [number](unsigned shift) { return ((number >> shift) & 0xFF) / 255.0; };
    return {WidgetBackground::Kind::color, Color::rgb(channel(16), channel(8), channel(0))};
}

std::vector<std::string> screenWords(std::span<const Size> screens) {
    std::vector<std::string> words;
    std::ranges::transform(screens, std::back_inserter(words), sizeText);
    return words;
}

std::string listed(std::span<const std::string_view> words) {
    if (words.size() < 2) return joined(words);
    return joined(words.first(words.size() - 1), ", ") + " or " + std::string(words.back());
}

WidgetRoom readFamily(std::string_view option, std::string_view value, Size screen,
                      std::span<const std::string_view> words) {
    const auto family = static_cast<WidgetFamily>(readWord(option, value, words));
    if (auto room = widgetRoom(family, screen)) return *std::move(room);
    if (std::ranges::find(knownScreens(), screen) == knownScreens().end())
        throw UsageError("no widget sizes are known for a screen of " + sizeText(screen) + "; give --size, or one of " +
                         joined(screenWords(knownScreens()), ", "));
    throw UsageError("a screen of " + sizeText(screen) + " has no " + std::string(value) + "; " +
                     joined(screenWords(screensThatHave(family)), ", ") + " have; --screen says which");
}

}  // namespace tavrin::cli
