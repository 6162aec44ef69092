#pragma once

#include <span>
#include <string_view>

namespace tavrin {

/// The names that `TimeZone::named` knows, in the order of the alphabet; none on a machine without a tz database. Read
/// by the first call; thread-safe.
[[nodiscard]] std::span<const std::string_view> timeZoneNames();

}  // namespace tavrin
