// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/alignment_dsl.h"

// The modifiers that change sizes, places and order. Lengths are in points.

namespace tavrin {

/// What authors should know of a frame's length.
constexpr Note frameNote(std::string_view text, std::string_view absent, std::string_view example) {
    return {.text = text, .unit = Unit::points, .minimum = 0, .absent = absent, .example = example};
}

/// A fixed room and, around it, a flexible one; always both. Lengths are in points.
struct FrameModifier {
    static constexpr ModifierType type = ModifierType::frame;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Puts the view into a room of a fixed size and that into one between bounds.";

    LosslessDSLValue<std::optional<float>> width = {};
    LosslessDSLValue<std::optional<float>> height = {};
    LosslessDSLValue<std::optional<float>> minWidth = {};
    LosslessDSLValue<std::optional<float>> maxWidth = {};
    LosslessDSLValue<std::optional<float>> minHeight = {};
    LosslessDSLValue<std::optional<float>> maxHeight = {};
    LosslessDSLValue<std::optional<AlignmentDSL>> alignment = {};

    static constexpr Fields fields{
        Field{"width", &FrameModifier::width, frameNote("The exact width.", "the view's own width", "40")},
        Field{"height", &FrameModifier::height, frameNote("The exact height.", "the view's own height", "40")},
        Field{"minWidth", &FrameModifier::minWidth, frameNote("The least width.", "the view's own width", "20")},
        Field{"maxWidth", &FrameModifier::maxWidth,
              frameNote("The greatest width; `\"infinity\"` takes all that is offered.", "the view's own width",
                        R"("infinity")")},
        Field{"minHeight", &FrameModifier::minHeight, frameNote("The least height.", "the view's own height", "20")},
        Field{"maxHeight", &FrameModifier::maxHeight,
              frameNote("The greatest height; `\"infinity\"` takes all that is offered.", "the view's own height",
                        R"("infinity")")},
        Field{"alignment", &FrameModifier::alignment,
              Note{.text = "Where the view lies in a larger room.", .defaultValue = R"("center")"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// The edges a document can name.
enum class EdgeDSL : unsigned char { top, bottom, leading, trailing, all };

template <>
struct Keywords<EdgeDSL> : NamedKeywords<EdgeDSL> {
    static constexpr std::string_view typeName = "edge";
    static constexpr EdgeDSL defaultCase = EdgeDSL::all;
};

/// The same inset, in points, at each of some edges: all where none are named, none where the list is empty.
struct PaddingModifier {
    static constexpr ModifierType type = ModifierType::padding;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Leaves room around the view.";

    DSLValue<std::optional<std::vector<EdgeDSL>>> edges = {};
    LosslessDSLValue<float> length = {};

    static constexpr Fields fields{
        Field{"edges", &PaddingModifier::edges,
              Note{.text = "The edges that get room; an empty list is none.",
                   .defaultValue = R"(["all"])",
                   .example = R"(["leading", "trailing"])"}},
        Field{"length", &PaddingModifier::length,
              Note{.text = "The room at each of these edges; negative lets the view reach beyond.",
                   .unit = Unit::points,
                   .example = "12"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Draws the view elsewhere, by points; its place stays.
struct OffsetModifier {
    static constexpr ModifierType type = ModifierType::offset;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Draws the view elsewhere; the room that it takes stays where it is.";

    LosslessDSLValue<float> x = {};
    LosslessDSLValue<float> y = {};

    static constexpr Fields fields{
        Field{"x", &OffsetModifier::x,
              Note{.text = "How far to the right, negative to the left.", .unit = Unit::points, .example = "4"}},
        Field{"y", &OffsetModifier::y,
              Note{.text = "How far down, negative up.", .unit = Unit::points, .example = "-4"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Whether the view fits into the room that is offered or fills it.
enum class ContentModeDSL : unsigned char { fill, fit };

template <>
struct Keywords<ContentModeDSL> : NamedKeywords<ContentModeDSL> {
    static constexpr std::string_view typeName = "AspectRatioModifier.ContentMode";
    static constexpr ContentModeDSL defaultCase = ContentModeDSL::fit;
};

/// Gives the view room of one ratio, width / height; the view's own ratio where none is named.
struct AspectRatioModifier {
    static constexpr ModifierType type = ModifierType::aspectRatio;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Gives the view room of one ratio of width to height.";

    using ContentMode = ContentModeDSL;

    LosslessDSLValue<std::optional<float>> aspectRatio = {};
    LosslessDSLValue<ContentMode> contentMode = {};

    static constexpr Fields fields{
        Field{"aspectRatio", &AspectRatioModifier::aspectRatio,
              Note{.text = "The width divided by the height.",
                   .minimum = 0,
                   .absent = "the view's own ratio",
                   .example = "1.5"}},
        Field{"contentMode", &AspectRatioModifier::contentMode,
              Note{.text = "Whether that room is the largest inside what is offered, or the smallest that covers it.",
                   .example = R"("fit")"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// How many lines each text inside may have; where none is named the limit is removed.
struct LineLimitModifier {
    static constexpr ModifierType type = ModifierType::lineLimit;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Limits the lines of each text inside the view; what does not fit ends in \"…\".";

    LosslessDSLValue<std::optional<std::int64_t>> number = {};

    static constexpr Fields fields{Field{"number", &LineLimitModifier::number,
                                         Note{.text = "The most lines.",
                                              .minimum = 1,
                                              .absent = "no limit, also where one holds around",
                                              .example = "2"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// When the view is drawn among the children of its stack: ascending.
struct ZIndexModifier {
    static constexpr ModifierType type = ModifierType::zIndex;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Changes when the view is drawn among the children of its stack.";

    LosslessDSLValue<float> zIndex = {};

    static constexpr Fields fields{
        Field{"zIndex", &ZIndexModifier::zIndex,
              Note{.text = "Children with greater numbers are drawn later, in front; 0 where the modifier is missing.",
                   .example = "1"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
