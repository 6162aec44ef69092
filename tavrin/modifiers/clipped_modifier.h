// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Cuts the view to its bounds, at whole pixels.
struct ClippedModifier {
    static constexpr ModifierType type = ModifierType::clipped;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary = "Cuts the view to its bounds, at whole pixels.";

    static constexpr std::tuple<> fields{};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
