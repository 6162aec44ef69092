// SPDX-License-Identifier: MIT
#include "tavrin/doors/option_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>

#include "tavrin/doors/option_error.h"
#include "tavrin/doors/words.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

/// What messages say that an option got.
std::string shown(const OptionValue& value) {
    struct Show {
        std::string operator()(bool truth) const { return truth ? "true" : "false"; }
        std::string operator()(double number) const { return shortNumber(number); }
        std::string operator()(std::uint64_t number) const { return std::to_string(number); }
        std::string operator()(const std::string& text) const { return "'" + text + "'"; }
        std::string operator()(Size size) const { return sizeText(size); }
        std::string operator()(Date date) const { return shortNumber(date.secondsSince1970) + " seconds since 1970"; }
    };
    return std::visit(Show{}, value);
}

[[noreturn]] void fail(std::string_view option, std::string_view wanted, const OptionValue& value,
                       std::string_view hint = {}) {
    throw OptionError(
        OptionFault::value, std::string(option),
        std::string(option) + " takes " + std::string(wanted) + ", not " + shown(value) + std::string(hint));
}

/// The value as a text; null where it is none.
const std::string* textOf(const OptionValue& value) { return std::get_if<std::string>(&value); }

std::optional<double> positiveNumber(std::string_view text) {
    if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return std::nullopt;
    const std::optional<double> number = doubleFromText(text);
    return number && std::isfinite(*number) && *number > 0 ? number : std::nullopt;
}

std::optional<double> positiveNumber(const OptionValue& value) {
    if (const std::string* const text = textOf(value)) return positiveNumber(std::string_view(*text));
    const std::uint64_t* const count = std::get_if<std::uint64_t>(&value);
    if (count) return positiveNumber(OptionValue(static_cast<double>(*count)));
    const double* const number = std::get_if<double>(&value);
    return number && std::isfinite(*number) && *number > 0 ? std::optional(*number) : std::nullopt;
}

std::optional<std::uint64_t> positiveCount(const OptionValue& value) {
    std::optional<std::uint64_t> count;
    if (const std::string* const text = textOf(value)) {
        count = intFromText<std::uint64_t>(*text);
    } else if (const std::uint64_t* const whole = std::get_if<std::uint64_t>(&value)) {
        count = *whole;
    } else if (const double* const number = std::get_if<double>(&value)) {
        constexpr double most = 9'007'199'254'740'992;  // above it not every whole number is a double
        if (*number > 0 && *number <= most && std::floor(*number) == *number)
            count = static_cast<std::uint64_t>(*number);
    }
    return count && *count > 0 ? count : std::nullopt;
}

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

std::string sizeText(Size size) { return shortNumber(size.width) + "x" + shortNumber(size.height); }

std::vector<std::string> screenWords(std::span<const Size> screens) {
    std::vector<std::string> words;
    std::ranges::transform(screens, std::back_inserter(words), sizeText);
    return words;
}

std::size_t readWord(std::string_view option, const OptionValue& value, std::span<const std::string_view> words) {
    const std::string* const text = textOf(value);
    const auto found = text ? std::ranges::find(words, *text) : words.end();
    if (found == words.end()) fail(option, listed(words), value, text ? suggestion(*text, words) : "");
    return static_cast<std::size_t>(found - words.begin());
}

bool readFlag(std::string_view option, const OptionValue& value) {
    if (const bool* const truth = std::get_if<bool>(&value)) return *truth;
    const std::string* const text = textOf(value);
    if (text && (*text == "1" || *text == "true")) return true;
    if (text && (*text == "0" || *text == "false")) return false;
    fail(option, wanted::flag, value);
}

std::string readFolder(std::string_view option, const OptionValue& value) {
    const std::string* const text = textOf(value);
    if (!text || text->empty() || text->find('\0') != std::string::npos) fail(option, wanted::folder, value);
    return *text;
}

Size readSize(std::string_view option, const OptionValue& value) {
    if (const Size* const size = std::get_if<Size>(&value)) {
        if (positiveNumber(OptionValue(size->width)) && positiveNumber(OptionValue(size->height))) return *size;
        fail(option, wanted::size, value);
    }
    const std::string_view text = textOf(value) ? std::string_view(*textOf(value)) : std::string_view();
    const std::size_t cross = std::min(text.find('x'), text.size());
    const auto width = positiveNumber(text.substr(0, cross));
    const auto height = positiveNumber(text.substr(std::min(cross + 1, text.size())));
    if (!width || !height) fail(option, wanted::size, value);
    return {*width, *height};
}

double readUpTo100(std::string_view option, const OptionValue& value) {
    const auto number = positiveNumber(value);
    if (!number || *number > 100) fail(option, wanted::upTo100, value);
    return *number;
}

double readSeconds(std::string_view option, const OptionValue& value) {
    const auto seconds = positiveNumber(value);
    if (!seconds) fail(option, wanted::seconds, value);
    return *seconds;
}

std::uint64_t readCount(std::string_view option, const OptionValue& value) {
    const auto count = positiveCount(value);
    if (!count) fail(option, wanted::count, value);
    return *count;
}

int readQuality(std::string_view option, const OptionValue& value) {
    const auto quality = positiveCount(value);
    if (!quality || *quality > 100) fail(option, wanted::quality, value);
    return static_cast<int>(*quality);
}

Date readDate(std::string_view option, const OptionValue& value) {
    const Date* const given = std::get_if<Date>(&value);
    const auto date = given ? std::optional(*given) : textOf(value) ? Date::parseRFC3339(*textOf(value)) : std::nullopt;
    if (!date || !std::isfinite(date->secondsSince1970)) fail(option, wanted::moment, value);
    return *date;
}

TimeZone readTimeZone(std::string_view option, const OptionValue& value) {
    const auto zone = textOf(value) ? TimeZone::named(*textOf(value)) : std::nullopt;
    if (!zone) fail(option, wanted::timeZone, value);
    return *zone;
}

WidgetBackground readBackground(std::string_view option, const OptionValue& value) {
    const std::string_view text = textOf(value) ? std::string_view(*textOf(value)) : std::string_view();
    if (text == "auto") return {};
    if (text == "none") return {WidgetBackground::Kind::none};
    const std::string_view digits = text.substr(text.starts_with('#') ? 1 : 0);
    const char* const end = digits.data() + digits.size();
    unsigned number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number, 16);
    if (digits.size() != 6 || error != std::errc{} || stop != end) fail(option, wanted::background, value);
    const auto channel = [number](unsigned shift) { return ((number >> shift) & 0xFF) / 255.0; };
    return {WidgetBackground::Kind::color, Color::rgb(channel(16), channel(8), channel(0))};
}

WidgetRoom readFamily(std::string_view option, const OptionValue& value, Size screen,
                      std::span<const std::string_view> words) {
    const auto family = static_cast<WidgetFamily>(readWord(option, value, words));
    if (auto room = widgetRoom(family, screen)) return *std::move(room);
    const auto refuse = [option](const std::string& message) {
        throw OptionError(OptionFault::value, std::string(option), message);
    };
    if (std::ranges::find(knownScreens(), screen) == knownScreens().end())
        refuse("no widget sizes are known for a screen of " + sizeText(screen) + "; give a size, or one of " +
               joined(screenWords(knownScreens()), ", "));
    refuse("a screen of " + sizeText(screen) + " has no " + *textOf(value) + "; " +
           joined(screenWords(screensThatHave(family)), ", ") + " have");
    return {};
}

}  // namespace tavrin
