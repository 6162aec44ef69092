// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/node.h"

namespace tavrin {

/// Another node in front of the view, centred, of the view's size.
struct OverlayModifier {
    static constexpr ModifierType type = ModifierType::overlay;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Draws another node in front of the view, centred and offered the view's size.";

    DSLValue<Node> view = {};

    static constexpr std::tuple fields{Field{"view", &OverlayModifier::view, Note{.text = "The node in front."}}};

    [[nodiscard]] AnyView modify(AnyView content, Context& context) const;
};

}  // namespace tavrin
