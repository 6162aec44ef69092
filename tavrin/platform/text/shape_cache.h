// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/memory/lru_cache.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/ui/font.h"

namespace tavrin::text {

/// What a shape depends on.
struct TextKey {
    struct Hash {
        std::size_t operator()(const TextKey& key) const;
    };

    std::string_view text;
    Font font;
    bool operator==(const TextKey&) const = default;
};

/// The shapes of recently used texts, bounded by the memory they take.
class ShapeCache {
public:
    explicit ShapeCache(std::size_t mostBytes) : kept_(mostBytes) {}

    /// The text's shape, which becomes the most recently used; null when it is not kept.
    std::shared_ptr<const ShapedText> find(std::string_view text, const Font& font);
    /// Keeps a shape and lets the least recently used ones go.
    void keep(std::string_view text, const Font& font, std::shared_ptr<const ShapedText> shaped);

    [[nodiscard]] std::size_t bytes() const { return kept_.cost(); }
    [[nodiscard]] std::size_t count() const { return kept_.count(); }

private:
    /// A key with a text of its own.
    struct KeptKey {
        std::string text;
        Font font;

        operator TextKey() const { return {text, font}; }  // NOLINT(google-explicit-constructor): it is one
        bool operator==(const KeptKey&) const = default;
        bool operator==(const TextKey& other) const { return TextKey(*this) == other; }
    };

    LRUCache<KeptKey, std::shared_ptr<const ShapedText>, TextKey::Hash> kept_;
};

}  // namespace tavrin::text
