// SPDX-License-Identifier: MIT
#include "tavrin/nodes/color_string.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "tavrin/platform/foundation/strings/graphemes.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

constexpr std::size_t rgbDigits = 6;
constexpr std::size_t opacityDigits = 2;

/// The first characters of a string: every rule here counts characters as readers do, and none counts further.
class FirstCharacters {
public:
    explicit FirstCharacters(std::string_view text) {
        for (GraphemeWalk walk(text); count_ < characters_.size() && walk.next();)
            characters_[count_++] = walk.character();
    }

    [[nodiscard]] std::size_t count() const { return count_ - next_; }
    [[nodiscard]] std::string_view first() const { return characters_[next_]; }
    /// Takes that many off the front.
    std::string take(std::size_t count) {
        std::string text;
        for (const std::size_t end = next_ + count; next_ < end; ++next_) text += characters_[next_];
        return text;
    }

private:
    std::array<std::string_view, 10> characters_;
    std::size_t count_ = 0;
    std::size_t next_ = 0;
};

/// A text without the white space around it, which goes by code points.
std::string_view trimmed(std::string_view text) {
    constexpr std::string_view spaces[] = {"\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085",
                                           "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
                                           "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u2028",
                                           "\u2029", "\u202F", "\u205F", "\u3000"};
    const auto find = [&](auto stands) { return std::ranges::find_if(spaces, stands); };
    const auto isNoSpace = [](char byte) { return byte > ' ' && byte < '\x7F'; };  // nor a part of one, as most are
    for (;;) {
        if (!text.empty() && isNoSpace(text.front())) break;
        const auto* const space = find([&](std::string_view each) { return text.starts_with(each); });
        if (space == std::end(spaces)) break;
        text.remove_prefix(space->size());
    }
    for (;;) {
        if (!text.empty() && isNoSpace(text.back())) return text;
        const auto* const space = find([&](std::string_view each) { return text.ends_with(each); });
        if (space == std::end(spaces)) return text;
        text.remove_suffix(space->size());
    }
}

/// An optional sign and hexadecimal digits, nothing else.
std::optional<std::int32_t> fromHexDigits(std::string_view digits) {
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
    FirstCharacters rest(trimmed(*hexString));
    if (rest.count() < rgbDigits) return std::nullopt;
    if (rest.first() == "#") rest.take(1);
    double opacity = 1;
    if (rest.count() >= opacityDigits + rgbDigits)
        opacity = static_cast<double>(intFromText<std::int64_t>(rest.take(opacityDigits)).value_or(100)) / 100;
    const std::optional<std::int32_t> rgb = fromHexDigits(rest.take(std::min(rest.count(), rgbDigits)));
    if (!rgb) return std::nullopt;
    return Color::rgb(channel(*rgb, 16), channel(*rgb, 8), channel(*rgb, 0), opacity);
}

SharedText convertARGB(const SharedText& value) {
    constexpr std::size_t argbCharacters = 9;
    FirstCharacters rest(value);
    if (rest.count() != argbCharacters) return value;
    const std::size_t begin = rest.take(1).size();
    const std::string alphaText = rest.take(2);
    const auto alpha = static_cast<float>(fromHexDigits(alphaText).value_or(255));
    const int percent = static_cast<int>(alpha / 255.0F * 100.0F);
    char digits[16];
    std::snprintf(digits, sizeof digits, "%02d", percent);
    std::string converted(value);
    return converted.replace(begin, alphaText.size(), digits);
}

std::optional<Color> dynamicColor(const Color& light, const Color& dark) {
    return Color::dynamic(light.resolved(Appearance::light), dark.resolved(Appearance::dark));
}

}  // namespace tavrin
