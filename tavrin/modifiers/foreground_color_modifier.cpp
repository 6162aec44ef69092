#include "tavrin/modifiers/foreground_color_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {

AnyView ForegroundColorModifier::modify(AnyView view, Context& context) const {
    const AnyView rendered = color.wrappedValue.render(context);
    const Color* plain = mirrorKeyPath("storage.view", rendered).as<Color>();
    if (plain == nullptr) throw TavrinError("ForegroundColorModifier", "invalid color node");
    return ForegroundColor{.color = *plain, .content = std::move(view)};
}

}  // namespace tavrin
