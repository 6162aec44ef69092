// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/paint/widget_look.h"
#include "tavrin/platform/ui/widget_family.h"

/// Readers of options' values. `option` is what messages call the option; each throws an `OptionError` that names it,
/// what it takes and what it got.
namespace tavrin {

/// An option's value as a door has it. A text stands for a value of any kind, since some doors have nothing else.
using OptionValue = std::variant<bool, double, std::uint64_t, std::string, Size, Date>;

/// What options of some kinds take, in words.
namespace wanted {
inline constexpr std::string_view upTo100 = "a number above 0 and up to 100";
inline constexpr std::string_view seconds = "a positive number of seconds";
inline constexpr std::string_view count = "a positive whole number";
inline constexpr std::string_view quality = "a whole number from 1 to 100";
inline constexpr std::string_view size = "a width and a height such as 338x158";
inline constexpr std::string_view moment = "a date and time such as 2026-03-01T09:41:00Z";
inline constexpr std::string_view timeZone = "the name of a time zone such as Europe/Madrid, CET or GMT+2";
inline constexpr std::string_view background = "auto, none or a colour of six hexadecimal digits such as #FF9500";
inline constexpr std::string_view folder = "the name of a folder";
inline constexpr std::string_view flag = "true or false";
}  // namespace wanted

/// "2", "1.5": as such values are written on the command line.
[[nodiscard]] std::string shortNumber(double number);
/// "338x158".
[[nodiscard]] std::string sizeText(Size size);
/// "390x844", "375x812".
[[nodiscard]] std::vector<std::string> screenWords(std::span<const Size> screens);

/// The index of `value` in `words`.
[[nodiscard]] std::size_t readWord(std::string_view option, const OptionValue& value,
                                   std::span<const std::string_view> words);
/// "true", "false", "1", "0".
[[nodiscard]] bool readFlag(std::string_view option, const OptionValue& value);
/// A path that is not empty.
[[nodiscard]] std::string readFolder(std::string_view option, const OptionValue& value);
/// "338x158": two positive finite numbers.
[[nodiscard]] Size readSize(std::string_view option, const OptionValue& value);
/// A number above 0 and up to 100: pixels for each point, or frames in a second.
[[nodiscard]] double readUpTo100(std::string_view option, const OptionValue& value);
/// A positive number of seconds.
[[nodiscard]] double readSeconds(std::string_view option, const OptionValue& value);
/// A positive whole number.
[[nodiscard]] std::uint64_t readCount(std::string_view option, const OptionValue& value);
/// A whole number from 1 to 100.
[[nodiscard]] int readQuality(std::string_view option, const OptionValue& value);
/// A date and time as RFC 3339 writes them.
[[nodiscard]] Date readDate(std::string_view option, const OptionValue& value);
[[nodiscard]] TimeZone readTimeZone(std::string_view option, const OptionValue& value);
/// "auto", "none" or a colour of six hexadecimal digits.
[[nodiscard]] WidgetBackground readBackground(std::string_view option, const OptionValue& value);
/// The room on a screen of the family of that name, which is one of `words`: all families' names and maybe more.
[[nodiscard]] WidgetRoom readFamily(std::string_view option, const OptionValue& value, Size screen,
                                    std::span<const std::string_view> words = widgetFamilyNames);

}  // namespace tavrin
