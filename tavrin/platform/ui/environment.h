// SPDX-License-Identifier: MIT
#pragma once

#include <any>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/ui/color.h"
#include "tavrin/platform/ui/font.h"

namespace tavrin {

/// What a view inherits from what holds it, and from the device. Composed views read it in their `body`.
struct EnvironmentValues {
    /// The font and weight of texts that name none.
    Font font = Font::body();
    /// How many lines a text may have; absent: any number.
    std::optional<std::int64_t> lineLimit = std::nullopt;
    /// The colour of texts and bare shapes.
    Color foregroundColor = Color::primary;
    Appearance appearance = Appearance::light;
    /// The moment that is drawn.
    Date date = {};
    TimeZone timeZone = {};
    /// Pixels for each point.
    double displayScale = 3;
    /// The host's own values, by name.
    std::map<std::string, std::any, std::less<>> custom = {};

    /// Whether both are known to be equal; the host's own values cannot be compared.
    [[nodiscard]] bool isLike(const EnvironmentValues& other) const {
        return font == other.font && lineLimit == other.lineLimit && foregroundColor == other.foregroundColor &&
               appearance == other.appearance && date == other.date && timeZone == other.timeZone &&
               displayScale == other.displayScale && custom.empty() && other.custom.empty();
    }
};

}  // namespace tavrin
