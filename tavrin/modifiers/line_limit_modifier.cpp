// SPDX-License-Identifier: MIT
#include "tavrin/modifiers/line_limit_modifier.h"

#include "tavrin/platform/ui/view_modifiers.h"

namespace tavrin {

AnyView LineLimitModifier::modify(AnyView view, Context&) const {
    return LineLimit{.number = number.wrappedValue(), .content = std::move(view)};
}

}  // namespace tavrin
