// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/widget_url_modifier.h"

#include "tavrin/dsl/address.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView WidgetURLModifier::modify(AnyView view, Context& context) const {
    std::optional<URL> candidate = convertedLink(url, context);
    std::optional<URL>& widgetURL = RenderState::of(context).widgetURL;
    if (!widgetURL) widgetURL = candidate;
    return WidgetURL{.url = std::move(candidate), .content = std::move(view)};
}

}  // namespace tavrin
