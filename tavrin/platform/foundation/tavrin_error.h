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

    TavrinError(std::string stage, std::string reason) : PlacedError(std::move(reason)), kind(std::move(stage)) {}

    friend bool operator==(const TavrinError& a, const TavrinError& b) {
        return a.kind == b.kind && a.message == b.message;
    }
};

}  // namespace tavrin
