#pragma once

#include <cstdint>
#include <optional>

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// How many lines each text inside may have; where none is named the limit is removed.
struct LineLimitModifier {
    static constexpr ModifierType type = ModifierType::lineLimit;
    static constexpr DSLVersion version = DSLVersion::v1;

    LosslessDSLValue<std::optional<std::int64_t>> number = {};

    static constexpr std::tuple fields{Field{"number", &LineLimitModifier::number}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
