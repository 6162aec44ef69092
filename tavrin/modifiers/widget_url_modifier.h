// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// Marks the view with the address that opens when the widget is tapped there. The first address of a render is the
/// widget's own.
struct WidgetURLModifier {
    static constexpr ModifierType type = ModifierType::widgetURL;
    static constexpr DSLVersion version = DSLVersion::v1;
    static constexpr std::string_view summary =
        "Names the address that opens when the widget is tapped; the first one that is drawn holds for the whole "
        "widget.";

    LosslessDSLValue<SharedText> url = {};

    static constexpr Fields fields{Field{"url", &WidgetURLModifier::url,
                                         Note{.text = "The address.", .example = R"("https://example.com/today")"}}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
