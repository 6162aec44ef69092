// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tavrin/doors/open_document.h"
#include "tavrin/platform/foundation/budget/render_budget.h"

namespace tavrin::python {

/// The documents that were used last, each decoded once by its text. Bounded; what was used longest ago goes first.
/// Thread-safe.
class OpenDocuments {
public:
    static constexpr std::size_t maximumCount = 64;
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;  ///< of their texts

    /// The process's own.
    static OpenDocuments& shared();

    /// The document of a text, decoded on a budget. Throws as `OpenDocument` does, also when that is known already.
    [[nodiscard]] OpenDocument find(std::string_view text, const RenderBudget& budget);

private:
    /// What decoding came to.
    using Outcome = std::variant<OpenDocument, ErrorDescription>;
    struct Kept {
        std::string text;
        RenderBudget budget;
        Outcome outcome;

        [[nodiscard]] bool isOf(std::string_view text, const RenderBudget& budget) const;
    };

    [[nodiscard]] std::optional<Outcome> findKept(std::string_view text, const RenderBudget& budget);
    void keep(Kept document);

    std::mutex mutex_;
    std::list<Kept> kept_;  // the latest first
};

}  // namespace tavrin::python
