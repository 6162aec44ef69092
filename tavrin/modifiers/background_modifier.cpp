#include "tavrin/modifiers/background_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView BackgroundModifier::modify(AnyView view, Context& context) const {
    return Background{.background = this->view.wrappedValue.render(context), .content = std::move(view)};
}

}  // namespace tavrin
