// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// What the pixels 0xAARRGGBB of a row differ in from those above. Step by step for the whole row rather than pixel by
// pixel: what comes next in a picture is hard to guess, for a processor as well.

namespace tavrin::paint {

/// The difference of two pixels, byte by byte and without carries.
constexpr std::uint32_t subtractBytes(std::uint32_t a, std::uint32_t b) {
    constexpr std::uint32_t high = 0x80808080;
    return ((a | high) - (b & ~high)) ^ ((a ^ ~b) & high);
}

/// A byte of a pixel in the order of a PNG.
template <std::size_t channel>
constexpr std::uint8_t byteOf(std::uint32_t pixel) {
    constexpr std::array<unsigned, 4> shifts{16, 8, 0, 24};
    return static_cast<std::uint8_t>(pixel >> shifts[channel]);
}

/// A bit for each of `pixelsAtOnce` pixels, set where it is not the one above.
constexpr std::size_t pixelsAtOnce = 16;
#if defined(__SSE2__)
inline std::uint64_t differing(const std::uint32_t* row, const std::uint32_t* above) {
    const auto same = [&](std::size_t i) {
        return _mm_cmpeq_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row + i)),
                               _mm_loadu_si128(reinterpret_cast<const __m128i*>(above + i)));
    };
    const __m128i words = _mm_packs_epi16(_mm_packs_epi32(same(0), same(4)), _mm_packs_epi32(same(8), same(12)));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(words)) ^ 0xFFFF;
}
#else
inline std::uint64_t differing(const std::uint32_t* row, const std::uint32_t* above) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < pixelsAtOnce; ++i) bits |= std::uint64_t{row[i] != above[i]} << i;
    return bits;
}
#endif

/// The same for `pixelsInWord`.
constexpr std::size_t pixelsInWord = 64;
inline std::uint64_t differingInWord(const std::uint32_t* row, const std::uint32_t* above) {
    return differing(row, above) | differing(row + 16, above + 16) << 16 | differing(row + 32, above + 32) << 32 |
           differing(row + 48, above + 48) << 48;
}

/// How many bits are set. std::popcount is a call where the oldest processors have no instruction for it.
constexpr unsigned countOnes(std::uint64_t bits) {
    bits -= bits >> 1 & 0x5555555555555555;
    bits = (bits & 0x3333333333333333) + (bits >> 2 & 0x3333333333333333);
    return static_cast<unsigned>(((bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101 >> 56);
}

/// Where the pixels of a row differ from those above, and by what. The first pixel is always one of them.
class RowDifferences {
public:
    /// A row of at least one pixel. `subtract` gives the difference of a pixel to the one above.
    template <class Subtract>
    void compare(const std::uint32_t* row, const std::uint32_t* above, std::size_t width, const Subtract& subtract) {
        findPlaces(row, above, width);
        for (std::size_t i = 0; i < count_; ++i) differences_[i] = subtract(row[places_[i]], above[places_[i]]);
        places_[count_] = static_cast<std::uint32_t>(width);
        differences_[count_] = ~differences_[count_ - 1];
    }

    [[nodiscard]] std::size_t count() const { return count_; }
    /// Ascending; one more than there are, which is the end of the row.
    [[nodiscard]] const std::uint32_t* places() const { return places_.data(); }
    /// One more than there are, which is not the last one again.
    [[nodiscard]] const std::uint32_t* differences() const { return differences_.data(); }

private:
    static constexpr std::size_t placesAtOnce = 8;

    void findPlaces(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
        if (places_.size() < width + placesAtOnce) {
            places_.resize(width + placesAtOnce);
            differences_.resize(width + placesAtOnce);
        }
        std::uint32_t* end = places_.data();
        std::uint64_t wanted = 1;
        std::size_t i = 0;
        for (; i + pixelsInWord <= width; i += pixelsInWord, wanted = 0)
            end = appendPlaces(wanted | differingInWord(row + i, above + i), static_cast<std::uint32_t>(i), end);
        std::uint64_t bits = wanted;
        const std::size_t first = i;
        for (; i + pixelsAtOnce <= width; i += pixelsAtOnce) bits |= differing(row + i, above + i) << (i - first);
        for (; i < width; ++i) bits |= std::uint64_t{row[i] != above[i]} << (i - first);
        end = appendPlaces(bits, static_cast<std::uint32_t>(first), end);
        count_ = static_cast<std::size_t>(end - places_.data());
    }

    /// The places of the set bits. Writes several at once, needed or not, since how many there are can't be foreseen.
    static std::uint32_t* appendPlaces(std::uint64_t bits, std::uint32_t first, std::uint32_t* out) {
        if (bits == 0) return out;
        if (bits == ~std::uint64_t{0}) {
            std::iota(out, out + pixelsInWord, first);
            return out + pixelsInWord;
        }
        constexpr std::uint64_t stop = std::uint64_t{1} << 63;
        std::uint32_t* const end = out + countOnes(bits);
        for (; out < end; out += placesAtOnce) {
            for (std::size_t i = 0; i < placesAtOnce; ++i, bits &= bits - 1)
                out[i] = first + static_cast<std::uint32_t>(std::countr_zero(bits | stop));
        }
        return end;
    }

    std::size_t count_ = 0;
    std::vector<std::uint32_t> places_;
    std::vector<std::uint32_t> differences_;
};

}  // namespace tavrin::paint
