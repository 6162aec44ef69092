// SPDX-License-Identifier: MIT
#include "tavrin/values/mirror_key_path.h"

#include <algorithm>
#include <array>
#include <string>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
const AnyView& mirrorKeyPath(std::string_view keyPath, const AnyView& view) {
    // Erased views are the only values with labelled members, two in a row.
    constexpr std::array<std::string_view, 2> labels{"storage", "view"};
    std::size_t reached = 0;
    bool leadsOn = true;
    for (std::string_view rest = keyPath; leadsOn && !rest.empty();) {
        const std::string_view label = rest.substr(0, rest.find('.'));
        rest.remove_prefix(std::min(label.size() + 1, rest.size()));
        if (label.empty()) continue;
        leadsOn = reached < labels.size() && label == labels[reached];
        ++reached;
    }
    if (!leadsOn || reached == 1)
        throw TavrinError("Unwrap AnyView", "value not found for key path: " + std::string(keyPath));
    return view;
}

}  // namespace tavrin
