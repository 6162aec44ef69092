#pragma once

#include <exception>
#include <string>

namespace tavrin {

/// What the engine, the nodes, the modifiers and the view layer throw.
///
/// `kind` names the stage or the type that failed ("Engine", "RefNode", "Unwrap AnyView" …), `message` says why.
struct TavrinError : std::exception {
    std::string kind;
    std::string message;

    TavrinError(std::string stage, std::string reason) : kind(std::move(stage)), message(std::move(reason)) {}

    /// The message alone; the kind is kept apart.
    [[nodiscard]] const char* what() const noexcept override { return message.c_str(); }

    friend bool operator==(const TavrinError& a, const TavrinError& b) {
        return a.kind == b.kind && a.message == b.message;
    }
};

}  // namespace tavrin
