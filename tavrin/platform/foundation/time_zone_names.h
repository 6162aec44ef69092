#pragma once

#include <span>
#include <string_view>

namespace tavrin {

/// What a database may call a link to whatever zone its machine is set to, which names none.
inline constexpr std::string_view linkToSystemZone = "localtime";

/// The names that `TimeZone::named` knows, in the order of the alphabet; none on a machine without a tz database. Read
/// by the first call; thread-safe.
[[nodiscard]] std::span<const std::string_view> timeZoneNames();

}  // namespace tavrin
