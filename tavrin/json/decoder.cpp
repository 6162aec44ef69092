// SPDX-License-Identifier: MIT
#include "tavrin/json/decoder.h"

#include <algorithm>
#include <string>

namespace tavrin {
namespace {

/// As much of a document's word as a message should repeat.
std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 80;
    if (text.size() <= longest) return '"' + std::string(text) + '"';
    std::size_t cut = longest;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
    return '"' + std::string(text.substr(0, cut)) + "…\"";
}

}  // namespace

std::size_t Decoder::depth() const {
    std::size_t depth = 0;
    for (const Decoder* step = parent_; step != nullptr; step = step->parent_) ++depth;
    return depth;
}

CodingPath Decoder::codingPath() const {
    CodingPath path;
    for (const Decoder* step = this; step->parent_ != nullptr; step = step->parent_) {
        if (step->key_.data() != nullptr) {
            path.emplace_back(std::string(step->key_));
        } else {
            path.emplace_back(step->index_);
        }
    }
    std::ranges::reverse(path);
    return path;
}

void Decoder::failTypeMismatch(std::string_view expected) const {
    const JSONKind found = kind();
    const bool isNull = found == JSONKind::null;
    throw DecodingError(isNull ? DecodingError::Kind::valueNotFound : DecodingError::Kind::typeMismatch, codingPath(),
                        "expected " + std::string(expected) + ", found " + std::string(describe(found)));
}

void Decoder::failDataCorrupted(std::string message) const {
    throw DecodingError(DecodingError::Kind::dataCorrupted, codingPath(), std::move(message));
}

void Decoder::failKeyNotFound(std::string_view key) const {
    DecodingError error(DecodingError::Kind::keyNotFound, codingPath(), "the key " + quoted(key) + " is missing");
    error.key = std::string(key);
    throw error;
}

void Decoder::failConversion(std::string_view text, std::string_view type) const {
    throw ConversionError(codingPath(), "cannot convert " + quoted(text) + " to " + std::string(type));
}

}  // namespace tavrin
