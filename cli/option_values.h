// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/paint/widget_look.h"
#include "tavrin/platform/ui/widget_family.h"

/// Readers of option values; each throws a `UsageError` that names the option, what it takes and what it got.
namespace tavrin::cli {

/// "2", "1.5": as such values are written on the command line.
[[nodiscard]] std::string shortNumber(double number);
/// The index of `value` in `words`.
[[nodiscard]] std::size_t readWord(std::string_view option, std::string_view value,
                                   std::span<const std::string_view> words);
/// A path that is not empty.
[[nodiscard]] std::filesystem::path readFolder(std::string_view option, std::string_view value);
/// "338x158": two positive finite numbers.
[[nodiscard]] Size readSize(std::string_view option, std::string_view value);
/// A number above 0 and up to 100: pixels for each point, or frames in a second.
[[nodiscard]] double readUpTo100(std::string_view option, std::string_view value);
/// A positive number of seconds.
[[nodiscard]] double readSeconds(std::string_view option, std::string_view value);
/// A positive whole number.
[[nodiscard]] std::uint64_t readCount(std::string_view option, std::string_view value);
/// A whole number from 1 to 100.
[[nodiscard]] int readQuality(std::string_view option, std::string_view value);
/// "FROM..TO": two moments, the second not before the first.
[[nodiscard]] std::pair<Date, Date> readMoments(std::string_view option, std::string_view value);
/// 0 to 65535.
[[nodiscard]] std::uint16_t readPort(std::string_view option, std::string_view value);
[[nodiscard]] Date readDate(std::string_view option, std::string_view value);
[[nodiscard]] TimeZone readTimeZone(std::string_view option, std::string_view value);
/// "auto", "none" or a colour of six hexadecimal digits.
[[nodiscard]] WidgetBackground readBackground(std::string_view option, std::string_view value);
/// The room on a screen of the family of that name, which is one of `words`: all families' names and maybe more.
[[nodiscard]] WidgetRoom readFamily(std::string_view option, std::string_view value, Size screen,
                                    std::span<const std::string_view> words = widgetFamilyNames);
/// "390x844", "375x812".
[[nodiscard]] std::vector<std::string> screenWords(std::span<const Size> screens);
/// "render, tree or check".
[[nodiscard]] std::string listed(std::span<const std::string_view> words);

}  // namespace tavrin::cli
