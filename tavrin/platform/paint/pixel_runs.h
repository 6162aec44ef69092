#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// Rows of pixels 0xAARRGGBB as what each differs in from the one above, and the runs in between.

namespace tavrin::paint {

/// A pixel's difference to the one above, byte by byte without carries, and the run of others that follows it.
struct PixelRun {
    std::uint32_t difference = 0;
    std::uint16_t pixels = 0;
    bool repeats = false;  ///< whether the run repeats the difference; else its pixels are those above
    bool startsRow = false;
};

/// Byte by byte and without carries.
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

/// A bit for each of so many pixels, set where it is not the one above.
constexpr std::size_t pixelsAtOnce = 16;
#if defined(__SSE2__)
inline std::uint32_t differing(const std::uint32_t* row, const std::uint32_t* above) {
    const auto same = [&](std::size_t i) {
        return _mm_cmpeq_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(row + i)),
                               _mm_loadu_si128(reinterpret_cast<const __m128i*>(above + i)));
    };
    const __m128i words = _mm_packs_epi16(_mm_packs_epi32(same(0), same(4)), _mm_packs_epi32(same(8), same(12)));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(words)) ^ 0xFFFF;
}
#else
inline std::uint32_t differing(const std::uint32_t* row, const std::uint32_t* above) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < pixelsAtOnce; ++i) bits |= std::uint32_t{row[i] != above[i]} << i;
    return bits;
}
#endif

/// Calls `visit` with each place of a row, but for the first, where the pixel is not the one above.
template <class Visit>
void forEachDiffering(const std::uint32_t* row, const std::uint32_t* above, std::size_t width, const Visit& visit) {
    std::size_t i = 0;
    std::uint32_t wanted = ~std::uint32_t{1};
    for (; i + pixelsAtOnce <= width; i += pixelsAtOnce, wanted = ~std::uint32_t{0})
        for (std::uint32_t bits = differing(row + i, above + i) & wanted; bits != 0; bits &= bits - 1)
            visit(i + static_cast<std::size_t>(std::countr_zero(bits)));
    for (i = i == 0 ? 1 : i; i < width; ++i)
        if (row[i] != above[i]) visit(i);
}

/// Calls `take` with the runs that a row of 1 to 65,535 pixels is made of. `subtract` gives the difference of a pixel
/// to the one above. What is as above for fewer than `shortest` pixels, which may be 1 or 2, is no run of the pixel
/// before.
template <class Subtract, class Take>
void forEachRun(const std::uint32_t* row, const std::uint32_t* above, std::size_t width, std::size_t shortest,
                const Subtract& subtract, const Take& take) {
    PixelRun run{.difference = subtract(row[0], above[0]), .startsRow = true};
    std::size_t end = 1;  // of what `run` covers
    const auto skipTo = [&](std::size_t place) {
        const std::size_t same = place - end;
        if (!run.repeats && same >= shortest) {
            run.pixels = static_cast<std::uint16_t>(same);
        } else {
            take(run);
            run = {.pixels = static_cast<std::uint16_t>(same - 1)};
        }
    };
    forEachDiffering(row, above, width, [&](std::size_t i) {
        const std::uint32_t difference = subtract(row[i], above[i]);
        if (i > end) {
            skipTo(i);
        } else if (difference == run.difference) {
            run.repeats = true;
            ++run.pixels;
            ++end;
            return;
        }
        take(run);
        run = {.difference = difference};
        end = i + 1;
    });
    if (width > end) skipTo(width);
    take(run);
}

}  // namespace tavrin::paint
