// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "tavrin/json/coding.h"
#include "tavrin/json/json_text.h"

namespace tavrin {

/// Reads values from JSON text; nodes and modifiers with the registries of all records.
class JSONDecoder {
public:
    explicit JSONDecoder(DecodingOptions options = {});

    /// Throws `DecodingError` or `ConversionError`.
    template <class T>
    [[nodiscard]] T decode(std::string_view text) const {
        const JSONText parsed(text, options_.depth);
        DecodingOptions options = options_;
        options.depth = parsed.depth();
        return tavrin::decode<T>(Decoder(parsed.root(), options));
    }

private:
    DecodingOptions options_;
};

/// Writes values as compact JSON text; numbers that JSON has no form for become the strings "infinity", "-infinity" and
/// "nan".
class JSONEncoder {
public:
    template <class T>
    [[nodiscard]] std::string encode(const T& value) const {
        JSONWriter writer(JSONWriter::Style::compact);
        tavrin::encode(value, writer);
        return std::move(writer).text();
    }
};

/// The shared decoder for hosts that store documents: reads "infinity", "-infinity" and "nan" where a floating-point
/// number is asked for. Thread-safe.
[[nodiscard]] const JSONDecoder& DSLJSONDecoder();  // NOLINT(readability-identifier-naming)
/// The shared encoder for hosts that build documents. Thread-safe.
[[nodiscard]] const JSONEncoder& DSLJSONEncoder();  // NOLINT(readability-identifier-naming)

}  // namespace tavrin
