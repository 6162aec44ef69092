#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/alignment_dsl.h"

namespace tavrin {

/// A fixed room and, around it, a flexible one; always both. Lengths are in points.
struct FrameModifier {
    static constexpr ModifierType type = ModifierType::frame;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<float>> width = {};
    LosslessDSLValue<std::optional<float>> height = {};
    LosslessDSLValue<std::optional<float>> minWidth = {};
    LosslessDSLValue<std::optional<float>> maxWidth = {};
    LosslessDSLValue<std::optional<float>> minHeight = {};
    LosslessDSLValue<std::optional<float>> maxHeight = {};
    LosslessDSLValue<std::optional<AlignmentDSL>> alignment = {};

    static constexpr std::tuple fields{
        Field{"width", &FrameModifier::width},         Field{"height", &FrameModifier::height},
        Field{"minWidth", &FrameModifier::minWidth},   Field{"maxWidth", &FrameModifier::maxWidth},
        Field{"minHeight", &FrameModifier::minHeight}, Field{"maxHeight", &FrameModifier::maxHeight},
        Field{"alignment", &FrameModifier::alignment}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
