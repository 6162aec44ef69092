// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// How many lines each text inside may have; where none is named the limit is removed.
struct LineLimitModifier {
    static constexpr ModifierType type = ModifierType::lineLimit;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Limits the lines of each text inside the view; what does not fit ends in \"…\".";

    LosslessDSLValue<std::optional<std::int64_t>> number = {};

    static constexpr std::tuple fields{Field{"number", &LineLimitModifier::number,
                                             Note{.text = "The most lines.",
                                                  .minimum = 1,
                                                  .absent = "no limit, also where one holds around",
                                                  .example = "2"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
