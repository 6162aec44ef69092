// SPDX-License-Identifier: MIT
#include "tavrin/engine/tavrin_engine.h"

#include "tavrin/engine/prepared_document.h"

namespace tavrin {

AnyView TavrinEngine::loadView(std::string_view json, std::optional<std::string_view> model, Context& context) const {
    return PreparedDocument(json).bind(model, context);
}

}  // namespace tavrin
