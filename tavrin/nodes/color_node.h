#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/values/unit_point_dsl.h"

namespace tavrin {

/// A solid colour, one that follows the appearance, or a linear gradient; as a node it fills its room, and it is the
/// type of every colour-valued property.
struct ColorNode {
    static constexpr NodeType type = NodeType::color;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<bool>> gradient = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> start = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> end = {};
    LosslessDSLValue<SharedText> value = {};
    LosslessDSLValue<std::optional<SharedText>> dark = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr std::tuple fields{
        Field{"gradient", &ColorNode::gradient}, Field{"start", &ColorNode::start},
        Field{"end", &ColorNode::end},           Field{"value", &ColorNode::value},
        Field{"dark", &ColorNode::dark},         Field{"modifiers", &ColorNode::modifiers}};

    /// Binds as every record does; but models carry colours with a hexadecimal alpha, documents do not, so a "value"
    /// that comes from the model is converted.
    [[nodiscard]] ColorNode boundToModel(const ModelContext& model) const;

    [[nodiscard]] AnyView render(Context& context) const;
};

}  // namespace tavrin
