// SPDX-License-Identifier: MIT
#include "tavrin/values/text_conversion.h"

#include <algorithm>

#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/edit_distance.h"

namespace tavrin {

void failUnknownKeyword(const Decoder& decoder, std::string_view type, std::span<const std::string_view> words) {
    const std::string_view word = decoder.value().string();
    constexpr std::size_t longestShown = 40;
    constexpr std::size_t mostListed = 5;
    const auto quoted = [](std::string_view text) { return '"' + std::string(text) + '"'; };
    std::string message = word.size() <= longestShown ? quoted(word) + " is not " : "not ";
    message += std::string_view("aeiou").find(type.front()) == std::string_view::npos ? "a " : "an ";
    message += type;
    // Numbers are all alike; for words the nearest is the likely one.
    const bool isWord = std::ranges::any_of(word, isLetter<char>);
    if (const auto meant = isWord ? closestMatch(word, words) : std::nullopt) {
        message += "; did you mean " + quoted(*meant) + "?";
    } else if (words.size() <= mostListed) {
        for (std::size_t i = 0; i < words.size(); ++i) message += (i == 0 ? "; there are " : ", ") + quoted(words[i]);
    }
    decoder.failDataCorrupted(message);
}

}  // namespace tavrin
