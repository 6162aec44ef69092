// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tavrin {

/// Words with a blank, or another separator, between them.
template <class Words>
[[nodiscard]] std::string joined(const Words& words, std::string_view separator = " ") {
    std::string text;
    for (const auto& word : words) text.append(text.empty() ? "" : separator).append(word);
    return text;
}

/// "render, tree or check".
[[nodiscard]] std::string listed(std::span<const std::string_view> words);

/// "; did you mean 'render'?" for a word that nearly is one of `known`, else nothing. Leading dashes don't count.
[[nodiscard]] std::string suggestion(std::string_view word, std::span<const std::string_view> known);

}  // namespace tavrin
