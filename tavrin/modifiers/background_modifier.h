// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/node.h"

namespace tavrin {

/// Another node behind the view, centred, of the view's size.
struct BackgroundModifier {
    static constexpr ModifierType type = ModifierType::background;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Draws another node behind the view, centred and offered the view's size.";

    DSLValue<Node> view = {};

    static constexpr std::tuple fields{Field{"view", &BackgroundModifier::view, Note{.text = "The node behind."}}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

}  // namespace tavrin
