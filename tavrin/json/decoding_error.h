// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/placed_error.h"

namespace tavrin {

/// A JSON text that is not what was asked for.
struct DecodingError : PlacedError {
    enum class Kind : unsigned char {
        keyNotFound,    ///< an object lacks the key `key`; `codingPath` leads to the object
        typeMismatch,   ///< a value is of another JSON type
        valueNotFound,  ///< null stands where a value is required
        dataCorrupted,  ///< the text is not JSON, or a word is not one of those allowed
    };

    Kind kind;
    /// The key that is missing, for `keyNotFound`.
    std::optional<std::string> key = std::nullopt;
    /// The byte at fault where the text is not JSON.
    std::optional<std::size_t> offset = std::nullopt;

    DecodingError(Kind kind, CodingPath codingPath, std::string message)
        : PlacedError(std::move(codingPath), std::move(message)), kind(kind) {}
};

/// A string that cannot be converted to its property's type.
struct ConversionError : PlacedError {
    static constexpr const char* domain = "ZepDSLConverter";
    static constexpr int code = -1;

    ConversionError(CodingPath codingPath, std::string message)
        : PlacedError(std::move(codingPath), std::move(message)) {}
};

}  // namespace tavrin
