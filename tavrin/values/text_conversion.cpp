#include "tavrin/values/text_conversion.h"

#include "tavrin/platform/foundation/edit_distance.h"

namespace tavrin {

void failUnknownKeyword(const Decoder& decoder, std::string_view type, std::span<const std::string_view> words) {
    const std::string_view word = decoder.value().string();
    constexpr std::size_t longestShown = 40;
    std::string message = "not a " + std::string(type);
    if (word.size() <= longestShown) message = '"' + std::string(word) + "\" is " + message;
    if (const auto meant = closestMatch(word, words)) message += "; did you mean \"" + std::string(*meant) + "\"?";
    decoder.failDataCorrupted(message);
}

}  // namespace tavrin
