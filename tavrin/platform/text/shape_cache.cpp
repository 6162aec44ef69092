// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/shape_cache.h"

#include <functional>

namespace tavrin::text {

std::size_t TextKey::Hash::operator()(const TextKey& key) const {
    const std::size_t style = static_cast<std::size_t>(key.font.weight) * 4 + static_cast<std::size_t>(key.font.family);
    std::size_t hash = std::hash<std::string_view>{}(key.text);
    hash ^= (std::hash<double>{}(key.font.size) + style) * 0x9E3779B97F4A7C15U;
    return hash;
}

std::shared_ptr<const ShapedText> ShapeCache::find(std::string_view text, const Font& font) {
    const auto* const known = kept_.find(TextKey{text, font});
    return known ? *known : nullptr;
}

void ShapeCache::keep(std::string_view text, const Font& font, std::shared_ptr<const ShapedText> shaped) {
    constexpr std::size_t overhead = 256;
    const std::size_t bytes = overhead + text.size() + shaped->bytes() + shaped->memoryBytes();
    kept_.insert(KeptKey{std::string(text), font}, std::move(shaped), bytes);
}

}  // namespace tavrin::text
