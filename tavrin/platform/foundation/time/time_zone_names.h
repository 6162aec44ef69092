// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tavrin {

/// What a database may call a link to whatever zone its machine is set to, which names none.
inline constexpr std::string_view linkToSystemZone = "localtime";

/// The zone of the tz database that an abbreviation stands for on the phone, summer or winter ("EST" and "EDT" both for
/// "America/New_York"); none for any other text.
[[nodiscard]] std::optional<std::string_view> zoneOfAbbreviation(std::string_view abbreviation);

/// Minutes east of Greenwich of "GMT" with a sign and hours, or hours and minutes: "GMT+8", "GMT+08", "GMT-0330",
/// "GMT-3:30". At most 18 hours; none for any other text.
[[nodiscard]] std::optional<int> minutesFromGMT(std::string_view text);

/// The names of zones and the abbreviations that `TimeZone::named` knows, in the order of the alphabet; none on a
/// machine without a tz database. Read by the first call; thread-safe.
[[nodiscard]] std::span<const std::string_view> timeZoneNames();

}  // namespace tavrin
