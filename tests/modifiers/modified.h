// SPDX-License-Identifier: MIT
#pragma once

#include "tests/dsl/rendered.h"

namespace tavrin {

/// A document of a spacer with modifiers.
inline std::string spacerWith(std::string_view modifiers) {
    return documentOf("{\"type\": \"spacer\", \"modifiers\": [" + std::string(modifiers) + "]}");
}

/// That spacer, drawn with or without a model.
inline AnyView modified(std::string_view modifiers, std::optional<std::string_view> model = std::nullopt) {
    return rendered(spacerWith(modifiers), model);
}

}  // namespace tavrin
