// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/note.h"
#include "tavrin/platform/ui/font.h"
#include "tavrin/values/text_conversion.h"

namespace tavrin {

/// The weights a document can name.
enum class FontWeight : unsigned char { regular, semibold, bold };

template <>
struct Keywords<FontWeight> : NamedKeywords<FontWeight> {
    static constexpr std::string_view typeName = "FontWeight";
    static constexpr FontWeight defaultCase = FontWeight::regular;
};

/// What authors should know of the keys "fontSize" and "fontWeight".
inline constexpr Note fontSizeNote{
    .text = "The size of the font.", .unit = Unit::points, .minimum = 0, .defaultValue = "17", .example = "13"};
inline constexpr Note fontWeightNote{
    .text = "The weight of the font.", .defaultValue = R"("regular")", .example = R"("semibold")"};

/// The weight of a text; none where none is named.
[[nodiscard]] constexpr std::optional<Font::Weight> textWeight(std::optional<FontWeight> weight) {
    if (!weight) return std::nullopt;
    return namesake<Font::Weight>(*weight);
}

/// The weight inside a platform font; regular where none is named.
[[nodiscard]] constexpr Font::Weight fontWeight(std::optional<FontWeight> weight) {
    return textWeight(weight).value_or(Font::Weight::regular);
}

}  // namespace tavrin
