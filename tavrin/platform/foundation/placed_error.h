// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/coding_path.h"

namespace tavrin {

/// Which of the two texts handed to `loadView` an error is about.
enum class TextRole : unsigned char { document, model };

/// What every error of decoding, binding and drawing knows: why, and where. Line and column are worked out only when
/// shown.
struct PlacedError : std::exception {
    /// The keys and indices that lead to the value at fault: from the root of the text when `isRooted`.
    CodingPath codingPath;
    /// False while an error of binding or drawing is still on its way to the root, and for good where it is about no
    /// value: then no place is known.
    bool isRooted = false;
    std::string message;
    TextRole role = TextRole::document;

    explicit PlacedError(std::string message) : message(std::move(message)) {}
    PlacedError(CodingPath codingPath, std::string message)
        : codingPath(std::move(codingPath)), isRooted(true), message(std::move(message)) {}

    /// The message alone.
    [[nodiscard]] const char* what() const noexcept override { return message.c_str(); }

    /// Adds the step that leads to where the path begins.
    void enclose(CodingKey step);
};

/// Does what concerns the value of a key; an error that comes out of it learns so.
template <class Call>
decltype(auto) within(std::string_view key, Call call) {
    try {
        return call();
    } catch (PlacedError& error) {
        error.enclose(std::string(key));
        throw;
    }
}

/// The same for an element of the array that is the value of a key.
template <class Call>
decltype(auto) within(std::string_view key, std::size_t index, Call call) {
    try {
        return call();
    } catch (PlacedError& error) {
        error.enclose(index);
        error.enclose(std::string(key));
        throw;
    }
}

}  // namespace tavrin
