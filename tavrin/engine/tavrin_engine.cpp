// SPDX-License-Identifier: MIT
#include "tavrin/engine/tavrin_engine.h"

#include "tavrin/engine/prepared_document.h"
#include "tavrin/platform/foundation/budget/metering.h"

namespace tavrin {

AnyView TavrinEngine::loadView(std::string_view json, std::optional<std::string_view> model, Context& context) const {
    Cost cost;
    const Metering metering(context.budget, cost);
    return PreparedDocument(json).bind(model, context);
}

}  // namespace tavrin
