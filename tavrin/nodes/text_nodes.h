// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/platform/foundation/note.h"
#include "tavrin/platform/ui/font.h"
#include "tavrin/values/text_conversion.h"

// The nodes that show text, and what they are set in.

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

/// A fixed or bound string. The size is in points.
struct TextNode {
    static constexpr NodeType type = NodeType::text;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Shows a text, broken into lines where its room is too narrow.";

    LosslessDSLValue<SharedText> content = {};
    LosslessDSLValue<std::optional<float>> fontSize = {};
    LosslessDSLValue<std::optional<FontWeight>> fontWeight = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"content", &TextNode::content,
                                         Note{.text = "The text, as it is or as an expression over the model.",
                                              .example = R"("{{initServerParam.title}}")"}},
                                   Field{"fontSize", &TextNode::fontSize, fontSizeNote},
                                   Field{"fontWeight", &TextNode::fontWeight, fontWeightNote},
                                   Field{"modifiers", &TextNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

/// A live count from or to a moment. The timestamp is in seconds since 1970 and held in single precision, so that
/// present-day moments are multiples of 128 seconds; the size is in points.
struct TimerNode {
    static constexpr NodeType type = NodeType::timer;
    static constexpr DSLVersion version = DSLVersion::v1_1;
    static constexpr std::string_view summary = "Shows the time since or until a moment, such as 12:34 or 1:02:03.";

    LosslessDSLValue<std::optional<float>> timestamp = {};
    LosslessDSLValue<std::optional<float>> fontSize = {};
    LosslessDSLValue<std::optional<FontWeight>> fontWeight = {};
    LosslessDSLValue<std::optional<bool>> monospace = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{
        Field{"timestamp", &TimerNode::timestamp,
              Note{.text = "The moment, counted from the beginning of 1970 UTC and rounded to a multiple of 128.",
                   .unit = Unit::seconds,
                   .absent = "now, when the document is loaded",
                   .example = "1700000128"}},
        Field{"fontSize", &TimerNode::fontSize, fontSizeNote},
        Field{"fontWeight", &TimerNode::fontWeight, fontWeightNote},
        Field{"monospace", &TimerNode::monospace,
              Note{.text = "Whether all digits are equally wide, 20 points high where no size is given; `false` also "
                           "makes `fontSize` ineffective.",
                   .absent = "digits of their own widths",
                   .example = "true"}},
        Field{"modifiers", &TimerNode::modifiers, modifiersNote}};

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
