// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <ostream>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/memory/shared_array.h"

namespace tavrin {

/// An immutable text in one word, shared between copies: what documents, models and views hold. May also be no text,
/// which reads as empty.
class SharedText {
public:
    /// No text.
    SharedText() = default;
    // Any text is a shared one wherever one is asked for.
    template <std::convertible_to<std::string_view> Text>
    SharedText(const Text& text)  // NOLINT(google-explicit-constructor)
        : SharedText(std::string_view(text)) {}
    // NOLINTNEXTLINE(google-explicit-constructor)
    SharedText(std::string_view text) : bytes_(SharedArray<char>::copyOf(text)) {}

    [[nodiscard]] bool exists() const { return bytes_.exists(); }
    [[nodiscard]] std::string_view view() const { return {bytes_.span().data(), bytes_.span().size()}; }
    [[nodiscard]] bool empty() const { return view().empty(); }
    [[nodiscard]] std::size_t size() const { return view().size(); }
    // NOLINTNEXTLINE(google-explicit-constructor): reads as any other text
    operator std::string_view() const { return view(); }
    explicit operator std::string() const { return std::string(view()); }

    friend bool operator==(const SharedText& a, const SharedText& b) { return a.view() == b.view(); }
    template <std::convertible_to<std::string_view> Text>
    friend bool operator==(const SharedText& a, const Text& b) {
        return a.view() == std::string_view(b);
    }
    friend std::ostream& operator<<(std::ostream& stream, const SharedText& text) { return stream << text.view(); }

private:
    SharedArray<char> bytes_;
};

}  // namespace tavrin
