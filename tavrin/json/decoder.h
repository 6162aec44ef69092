// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_text.h"

namespace tavrin {

struct RecordRegistries;

/// What a decoder accepts.
struct DecodingOptions {
    /// Read the strings "infinity", "-infinity" and "nan" where a floating-point number is asked for.
    bool convertsNonConformingFloats = false;
    /// How deep the text may be nested, or is known to be. More than `JSONText::maximumDepth` is for records that see
    /// to it themselves.
    std::size_t depth = JSONText::maximumDepth;
    /// Which records stand behind the "type"s of a document; other texts need none.
    const RecordRegistries* registries = nullptr;
};

/// One JSON value while it is decoded, linked to the value it stands in. The way from the root is spelled out only when
/// something fails. Lives on the stack for the time of one `decode` call.
class Decoder {
public:
    Decoder(JSONElement root, const DecodingOptions& options) : element_(root), options_(&options) {}

    /// The decoder of a member or an element of this one's value.
    [[nodiscard]] Decoder member(std::string_view key, JSONElement value) const { return {value, this, key, 0}; }
    [[nodiscard]] Decoder element(std::size_t index, JSONElement value) const { return {value, this, {}, index}; }

    [[nodiscard]] const JSONElement& value() const { return element_; }
    [[nodiscard]] JSONKind kind() const { return element_.kind(); }
    [[nodiscard]] const DecodingOptions& options() const { return *options_; }
    [[nodiscard]] CodingPath codingPath() const;
    /// Whether the value stands in more others than those may be who follow a text all the way down.
    [[nodiscard]] bool isTooDeep() const {
        return options_->depth > JSONText::maximumDepth && depth() > JSONText::maximumDepth;
    }

    /// Fails unless the value is of that kind.
    void require(JSONKind kind) const {
        if (element_.kind() != kind) failTypeMismatch(describe(kind));
    }

    /// Throws typeMismatch, or valueNotFound where null stands.
    [[noreturn]] void failTypeMismatch(std::string_view expected) const;
    [[noreturn]] void failDataCorrupted(std::string message) const;
    /// Throws keyNotFound for a key that this value, an object, lacks.
    [[noreturn]] void failKeyNotFound(std::string_view key) const;
    [[noreturn]] void failConversion(std::string_view text, std::string_view type) const;

private:
    [[nodiscard]] std::size_t depth() const;
    Decoder(JSONElement value, const Decoder* parent, std::string_view key, std::size_t index)
        : element_(value), options_(parent->options_), parent_(parent), key_(key), index_(index) {}

    JSONElement element_;
    const DecodingOptions* options_;
    const Decoder* parent_ = nullptr;
    std::string_view key_;  // without data for an element of an array
    std::size_t index_ = 0;
};

}  // namespace tavrin
