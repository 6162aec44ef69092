#pragma once

#include <cstddef>
#include <exception>
#include <optional>
#include <string>

#include "tavrin/json/coding_path.h"

namespace tavrin {

/// Which of the two texts handed to `loadView` an error is about.
enum class TextRole : unsigned char { document, model };

/// What every error of decoding knows: where it happened and why. Line and column are worked out only when shown.
struct PlacedError : std::exception {
    /// The keys and indices from the root to the value at fault.
    CodingPath codingPath;
    std::string message;
    TextRole role = TextRole::document;

    [[nodiscard]] const char* what() const noexcept override { return message.c_str(); }

protected:
    PlacedError(CodingPath codingPath, std::string message)
        : codingPath(std::move(codingPath)), message(std::move(message)) {}
};

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
