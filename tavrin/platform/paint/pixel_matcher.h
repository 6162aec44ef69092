// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "tavrin/platform/paint/row_differences.h"
#include "tavrin/platform/paint/run_symbols.h"

namespace tavrin::paint {

/// How many bytes back a match may reach.
constexpr std::size_t farthestMatch = 32768;

/// For how many pixels, at most `count`, two places are alike.
inline std::size_t countSame(const std::uint32_t* a, const std::uint32_t* b, std::size_t count) {
    std::size_t i = 0;
#if defined(__SSE2__)
    constexpr std::size_t atOnce = 4;
    for (; i + atOnce <= count; i += atOnce) {
        const __m128i same = _mm_cmpeq_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i)),
                                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i)));
        const auto bits = static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(same)));
        if (bits != 0xF) return i + static_cast<std::size_t>(std::countr_one(bits));
    }
#endif
    while (i < count && a[i] == b[i]) ++i;
    return i;
}

/// Pixels that have been there before, and how many bytes back.
struct PixelMatch {
    std::size_t pixels = 0;
    std::size_t distance = 0;
};

/// Finds where pixels repeat others, within rows: nothing reaches over the end of one, here or there.
template <std::size_t channels>
class PixelMatcher {
public:
    /// Rows of `width` pixels, each behind one byte. For a match at most so many places are looked at.
    PixelMatcher(std::span<const std::uint32_t> pixels, std::size_t width, int mostLooks)
        : pixels_(pixels.data()), width_(width), rowBytes_(channels * width + 1), mostLooks_(mostLooks) {}

    /// Among the longest matches that a few looks find the nearest, perhaps none. Later ones may repeat the pixel.
    PixelMatch find(std::size_t y, std::size_t x) {
        const std::size_t place = y * width_ + x;
        const std::uint32_t* const here = pixels_ + place;
        const std::size_t limit = std::min(longestMatch / channels, width_ - x);
        PixelMatch best;
        if (x > 0) best = {countSame(here, here - 1, limit), channels};
        if (best.pixels == limit) return best;
        if (isNearAbove(y)) {
            const std::size_t same = countSame(here, here - width_, limit);
            if (same > best.pixels) best = {same, rowBytes_};
        }
        if (best.pixels < std::min(enough, limit) && x + 1 < width_) best = amongPairs(y, x, limit, best);
        if (best.pixels == 0) best = lastSame(y, x);
        remember(y, x);
        return best;
    }

    /// How many of the first pixels of a row are those above; 0 where these are too far away.
    [[nodiscard]] std::size_t asAbove(std::size_t y) const {
        if (!isNearAbove(y)) return 0;
        const std::uint32_t* const here = pixels_ + y * width_;
        return countSame(here, here - width_, std::min((longestMatch - 1) / channels, width_));
    }
    /// Whether the first pixels of a row are one.
    [[nodiscard]] bool isOne(std::size_t y, std::size_t count) const {
        const std::uint32_t* const here = pixels_ + y * width_;
        return countSame(here + 1, here, count - 1) == count - 1;
    }

    /// Lets later matches repeat a pixel and, with it, the next one.
    void remember(std::size_t y, std::size_t x) {
        const std::size_t place = y * width_ + x;
        const std::uint32_t* const here = pixels_ + place;
        const auto next = static_cast<std::uint32_t>(place + 1);
        lastOfPixel_[hashOfOne(*here)] = next;
        if (x + 1 == width_) return;
        std::uint32_t& last = lastOfPair_[hashOfPair(here[0], here[1])];
        pairBefore_[place % placesKept] = last;
        last = next;
    }

private:
    // Looking for more than this is seldom worth the time.
    static constexpr std::size_t enough = 32;
    static constexpr unsigned pairBits = 15;
    static constexpr unsigned singleBits = 11;
    static constexpr std::size_t farthestPixel = farthestMatch / channels;
    static constexpr std::size_t placesKept = std::bit_ceil(farthestPixel + 1);

    static std::uint32_t hashOfOne(std::uint32_t pixel) { return pixel * 0x9E3779B1U >> (32 - singleBits); }
    static std::uint32_t hashOfPair(std::uint32_t first, std::uint32_t second) {
        return (first * 0x9E3779B1U + second * 0x85EBCA6BU) >> (32 - pairBits);
    }

    [[nodiscard]] bool isNearAbove(std::size_t y) const { return y > 0 && rowBytes_ <= farthestMatch; }

    /// How long a match with an earlier place is, and how far away; longer than farthestMatch is too far.
    [[nodiscard]] PixelMatch matchWith(std::size_t earlier, std::size_t y, std::size_t x, std::size_t limit) const {
        const std::size_t row = earlier >= y * width_ ? y : earlier / width_;
        const std::size_t column = earlier - row * width_;
        const std::size_t distance = (y - row) * rowBytes_ + channels * x - channels * column;
        return {countSame(pixels_ + y * width_ + x, pixels_ + earlier, std::min(limit, width_ - column)), distance};
    }

    PixelMatch amongPairs(std::size_t y, std::size_t x, std::size_t limit, PixelMatch best) const {
        const std::size_t place = y * width_ + x;
        const std::uint32_t* const here = pixels_ + place;
        std::size_t next = lastOfPair_[hashOfPair(here[0], here[1])];
        for (int looks = 0; looks < mostLooks_ && next != 0; ++looks) {
            const std::size_t earlier = next - 1;
            if (place - earlier > farthestPixel) break;
            const std::uint32_t* const there = pixels_ + earlier;
            if (there[best.pixels] == here[best.pixels] && there[0] == here[0] && there[1] == here[1]) {
                const PixelMatch match = matchWith(earlier, y, x, limit);
                if (match.distance > farthestMatch) break;
                if (match.pixels > best.pixels) best = match;
                if (best.pixels == limit) break;
            }
            next = pairBefore_[earlier % placesKept];
        }
        return best;
    }

    PixelMatch lastSame(std::size_t y, std::size_t x) const {
        const std::size_t place = y * width_ + x;
        const std::size_t next = lastOfPixel_[hashOfOne(pixels_[place])];
        if (next == 0 || pixels_[next - 1] != pixels_[place] || place - (next - 1) > farthestPixel) return {};
        const PixelMatch match = matchWith(next - 1, y, x, 1);
        return match.distance > farthestMatch ? PixelMatch{} : match;
    }

    const std::uint32_t* pixels_;
    std::size_t width_;
    std::size_t rowBytes_;
    int mostLooks_;
    // Places plus 1 of what was remembered last, by hash; 0 is none. And of each pair the one before it.
    std::vector<std::uint32_t> lastOfPair_ = std::vector<std::uint32_t>(std::size_t{1} << pairBits);
    std::vector<std::uint32_t> lastOfPixel_ = std::vector<std::uint32_t>(std::size_t{1} << singleBits);
    std::vector<std::uint32_t> pairBefore_ = std::vector<std::uint32_t>(placesKept);
};

}  // namespace tavrin::paint
