// SPDX-License-Identifier: MIT
#include "tavrin/values/mirror_key_path.h"

#include <string>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

/// What a path has reached: erased views are the only values with labelled members, two in a row.
enum class Reached { erasedView, storage, concreteView };

}  // namespace

const AnyView& mirrorKeyPath(std::string_view keyPath, const AnyView& view) {
    Reached reached = Reached::erasedView;
    std::string_view rest = keyPath;
    while (!rest.empty()) {
        const std::size_t dot = rest.find('.');
        const std::string_view label = rest.substr(0, dot);
        rest.remove_prefix(dot == std::string_view::npos ? rest.size() : dot + 1);
        if (label.empty()) continue;
        if (reached == Reached::erasedView && label == "storage") {
            reached = Reached::storage;
        } else if (reached == Reached::storage && label == "view") {
            reached = Reached::concreteView;
        } else {
            throw TavrinError("Unwrap AnyView", "value not found for key path: " + std::string(keyPath));
        }
    }
    if (reached == Reached::storage)
        throw TavrinError("Unwrap AnyView", "value not found for key path: " + std::string(keyPath));
    return view;
}

}  // namespace tavrin
