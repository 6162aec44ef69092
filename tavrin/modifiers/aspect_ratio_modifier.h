// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"

namespace tavrin {

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

    static constexpr std::tuple fields{
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

}  // namespace tavrin
