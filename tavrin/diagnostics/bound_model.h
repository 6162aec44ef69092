// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tavrin/json/json_outline.h"
#include "tavrin/values/model_context.h"

namespace tavrin {

/// A model with its text, for rules that ask what an expression leads to. Refers to the text, which must live as long.
class BoundModel {
public:
    /// None for a text that is no JSON.
    static std::optional<BoundModel> read(std::string_view text);

    [[nodiscard]] const ModelContext& context() const { return context_; }
    [[nodiscard]] const JSONOutline& outline() const { return outline_; }

    /// The text that an expression leads to; none where it leads nowhere. The expression must be well-formed.
    [[nodiscard]] std::optional<std::string> find(std::string_view expression) const;

private:
    BoundModel(ModelContext context, std::string_view text) : context_(std::move(context)), outline_(text) {}

    ModelContext context_;
    JSONOutline outline_;
};

/// The path into a model that an expression stands for, which must be well-formed.
[[nodiscard]] CodingPath pathInModel(std::string_view expression);

/// Whether an expression, braces included, can be resolved by some model. The others must not be resolved.
[[nodiscard]] bool isWellFormed(std::string_view expression);

}  // namespace tavrin
