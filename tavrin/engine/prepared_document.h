// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "tavrin/dsl/context.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

struct DSLRoot;
struct TavrinError;

/// A document that is decoded once and bound as often as needed. Immutable: several threads may bind it at once, each
/// with a context of its own.
class PreparedDocument {
public:
    /// Throws `DecodingError` or `ConversionError` for a text that is no document.
    explicit PreparedDocument(std::string_view json);

    /// What `TavrinEngine::loadView` does after decoding; throws as that does.
    [[nodiscard]] AnyView bind(std::optional<std::string_view> model, Context& context) const;

    /// Gives an error of layout or painting its place where it happened at a view that this document made.
    void place(TavrinError& error) const;

private:
    std::shared_ptr<const DSLRoot> root_;
};

}  // namespace tavrin
