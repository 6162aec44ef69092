// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// Takes the concrete view out of a type-erased one. An erased view has a member "storage", a storage a member "view";
/// the result of "storage.view" is tested with `as<…>()`. Throws `TavrinError` of kind "Unwrap AnyView" for a path that
/// leads nowhere or not to a view.
[[nodiscard]] const AnyView& mirrorKeyPath(std::string_view keyPath, const AnyView& view);

}  // namespace tavrin
