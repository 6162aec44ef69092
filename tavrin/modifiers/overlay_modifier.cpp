#include "tavrin/modifiers/overlay_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView OverlayModifier::modify(AnyView view, Context& context) const {
    return Overlay{.overlay = this->view.wrappedValue.render(context), .content = std::move(view)};
}

}  // namespace tavrin
