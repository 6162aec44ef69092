#include "tavrin/nodes/color_string.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "tavrin/platform/foundation/number_text.h"

namespace tavrin {
namespace {

constexpr std::size_t rgbDigits = 6;
constexpr std::size_t opacityDigits = 2;

/// A string as its characters: every rule here counts characters, not bytes.
std::vector<std::string_view> charactersOf(std::string_view text) {
    std::vector<std::string_view> characters;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin + 1;
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) ++end;
        characters.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return characters;
}

bool isWhiteSpace(std::string_view character) {
    constexpr std::string_view spaces[] = {"\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085",
                                           "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
                                           "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u2028",
                                           "\u2029", "\u202F", "\u205F", "\u3000"};
    return std::find(std::begin(spaces), std::end(spaces), character) != std::end(spaces);
}

/// An optional sign and hexadecimal digits, nothing else.
std::optional<std::int32_t> hexadecimal(std::string_view digits) {
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
        if (digits.starts_with('-')) return std::nullopt;
    }
    std::int32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    return error == std::errc{} && stop == end ? std::optional(value) : std::nullopt;
}

double channel(std::int32_t rgb, int shift) { return ((rgb >> shift) & 0xFF) / 255.0; }

}  // namespace

std::optional<Color> colorFromHexString(std::optional<std::string_view> hexString) {
    if (!hexString) return std::nullopt;
    const std::vector<std::string_view> characters = charactersOf(*hexString);
    auto begin = std::find_if_not(characters.begin(), characters.end(), isWhiteSpace);
    auto end = characters.end();
    while (end != begin && isWhiteSpace(*(end - 1))) --end;
    const auto remaining = [&] { return static_cast<std::size_t>(end - begin); };
    const auto take = [&](std::size_t count) {
        std::string text;
        for (const auto stop = begin + static_cast<std::ptrdiff_t>(count); begin != stop; ++begin) text += *begin;
        return text;
    };

    if (remaining() < rgbDigits) return std::nullopt;
    if (*begin == "#") ++begin;
    double opacity = 1;
    if (remaining() >= opacityDigits + rgbDigits)
        opacity = static_cast<double>(intFromText<std::int64_t>(take(opacityDigits)).value_or(100)) / 100;
    const std::optional<std::int32_t> rgb = hexadecimal(take(std::min(remaining(), rgbDigits)));
    if (!rgb) return std::nullopt;
    return Color::rgb(channel(*rgb, 16), channel(*rgb, 8), channel(*rgb, 0), opacity);
}

SharedText convertARGB(const SharedText& value) {
    constexpr std::size_t argbCharacters = 9;
    const std::vector<std::string_view> characters = charactersOf(value);
    if (characters.size() != argbCharacters) return value;
    const std::string alphaText = std::string(characters[1]) + std::string(characters[2]);
    const auto alpha = static_cast<float>(hexadecimal(alphaText).value_or(255));
    const int percent = static_cast<int>(alpha / 255.0F * 100.0F);
    char digits[16];
    std::snprintf(digits, sizeof digits, "%02d", percent);
    std::string converted(value);
    return converted.replace(characters[0].size(), alphaText.size(), digits);
}

std::optional<Color> dynamicColor(const Color& light, const Color& dark) {
    return Color::dynamic(light.resolved(Appearance::light), dark.resolved(Appearance::dark));
}

}  // namespace tavrin
