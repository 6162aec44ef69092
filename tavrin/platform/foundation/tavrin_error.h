// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "tavrin/platform/foundation/placed_error.h"

namespace tavrin {

/// What the engine, the nodes, the modifiers and the view layer throw.
///
/// `kind` names the stage or the type that failed ("Engine", "RefNode", "Unwrap AnyView" …), `message` says why.
struct TavrinError : PlacedError {
    std::string kind;
    /// Names what made the view that an error of layout or painting was at, for those who know what that was; null
    /// where that is not known.
    const void* origin = nullptr;

    TavrinError(std::string stage, std::string reason) : PlacedError(std::move(reason)), kind(std::move(stage)) {}

    friend bool operator==(const TavrinError& a, const TavrinError& b) {
        return a.kind == b.kind && a.message == b.message;
    }
};

}  // namespace tavrin
