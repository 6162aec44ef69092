// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

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
    explicit ShapeCache(std::size_t mostBytes) : mostBytes_(mostBytes) {}

    /// The text's shape, which becomes the most recently used; null when it is not kept.
    std::shared_ptr<const ShapedText> find(std::string_view text, const Font& font);
    /// Keeps a shape and lets the least recently used ones go.
    void keep(std::string_view text, const Font& font, std::shared_ptr<const ShapedText> shaped);

    [[nodiscard]] std::size_t bytes() const { return bytes_; }
    [[nodiscard]] std::size_t count() const { return index_.size(); }

private:
    struct Entry {
        std::string text;
        Font font;
        std::shared_ptr<const ShapedText> shaped;
        std::size_t bytes;
    };

    std::size_t mostBytes_;
    std::size_t bytes_ = 0;
    std::list<Entry> recent_;                                                       ///< the most recently used first
    std::unordered_map<TextKey, std::list<Entry>::iterator, TextKey::Hash> index_;  ///< by the entries' own texts
};

}  // namespace tavrin::text
