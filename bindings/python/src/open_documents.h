// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tavrin/doors/open_document.h"
#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"

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
    /// A text, and what decoding it may cost.
    struct Lookup {
        std::string_view text;
        const RenderBudget& budget;
    };
    struct Key {
        std::string text;
        RenderBudget budget;

        bool operator==(const Lookup& other) const {
            return budget.steps == other.budget.steps && budget.pixels == other.budget.pixels &&
                   budget.bytes == other.budget.bytes && budget.seconds == other.budget.seconds && text == other.text;
        }
        bool operator==(const Key& other) const { return *this == Lookup{other.text, other.budget}; }
    };
    struct Hash {
        std::size_t operator()(const Lookup& key) const { return std::hash<std::string_view>{}(key.text); }
        std::size_t operator()(const Key& key) const { return std::hash<std::string_view>{}(key.text); }
    };
    using Cache = LRUCache<Key, Outcome, Hash>;

    [[nodiscard]] std::optional<Outcome> findKept(const Lookup& key);
    void keep(const Lookup& key, const Outcome& outcome);

    std::mutex mutex_;
    Cache kept_{maximumBytes, maximumCount};
};

}  // namespace tavrin::python
