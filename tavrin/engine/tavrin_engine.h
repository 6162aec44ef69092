// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "tavrin/dsl/context.h"
#include "tavrin/dsl/dsl_version.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// Turns a document into a view tree. Holds no state: one engine may serve any number of calls and threads.
class TavrinEngine {
public:
    using Context = tavrin::Context;

    /// The newest document version that this engine accepts: v1_2.
    static constexpr DSLVersion supporedVersion = DSLVersion::v1_2;

    /// Decodes a document, binds it to a model where one is given, and builds the view of its node "main".
    ///
    /// `json` and `model` are JSON texts in UTF-8. Pictures are loaded when the view is laid
    /// out; here only those that earlier calls with the same context met begin to be fetched, and are not waited for.
    /// Throws `DecodingError` or `ConversionError` for a text that is no document or model (`role` says which),
    /// `ModelContextError` for an expression that does not resolve, and `TavrinError` for everything else. One context
    /// must not be used by two calls at once.
    AnyView loadView(std::string_view json, std::optional<std::string_view> model, Context& context) const;
};

}  // namespace tavrin
