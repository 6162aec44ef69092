// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/picture_difference.h"

#include <algorithm>
#include <cstdlib>

#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::paint {
namespace {

constexpr int gap = 24;
constexpr std::uint32_t ground = 0xFFB8B8C0;
constexpr std::uint32_t paper = 0xFFFFFFFF;
constexpr std::uint32_t marked = 0xFFE8112D;

int channel(std::uint32_t pixel, unsigned shift) { return static_cast<int>(pixel >> shift & 0xFF); }

/// The greatest difference of two pixels' channels.
int distance(std::uint32_t a, std::uint32_t b) {
    if (a == b) return 0;
    int greatest = 0;
    for (const unsigned shift : {0U, 8U, 16U, 24U})
        greatest = std::max(greatest, std::abs(channel(a, shift) - channel(b, shift)));
    return greatest;
}

bool holds(const PixelBuffer& picture, int x, int y) { return x < picture.width() && y < picture.height(); }

/// Calls `visit` with each place of either picture and the distance there, -1 where one of them has no pixel.
template <class Visit>
void forEachPixel(const PixelBuffer& before, const PixelBuffer& after, Visit visit) {
    for (int y = 0; y < std::max(before.height(), after.height()); ++y)
        for (int x = 0; x < std::max(before.width(), after.width()); ++x) {
            const bool inBoth = holds(before, x, y) && holds(after, x, y);
            if (inBoth)
                visit(x, y, distance(before.row(y)[x], after.row(y)[x]));
            else if (holds(before, x, y) || holds(after, x, y))
                visit(x, y, -1);
        }
}

/// An opaque pixel, gray and mostly white.
std::uint32_t faded(std::uint32_t pixel) {
    const int gray = (channel(pixel, 16) * 3 + channel(pixel, 8) * 6 + channel(pixel, 0)) / 10;
    const auto value = static_cast<std::uint32_t>(255 - (255 - gray) / 4);
    return packPixel(0xFF, value, value, value);
}

void copyTo(PixelBuffer& target, const PixelBuffer& picture, int left, bool isFaded) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint32_t pixel = picture.row(y)[x];
            target.row(gap + y)[left + x] = isFaded ? faded(over(pixel, paper)) : over(pixel, ground);
        }
}

}  // namespace

PictureDifference compare(const PixelBuffer& before, const PixelBuffer& after, int tolerance) {
    PictureDifference difference;
    difference.sameSize = before.width() == after.width() && before.height() == after.height();
    if (before == after) return difference;
    int left = INT32_MAX;
    int top = INT32_MAX;
    int right = 0;
    int bottom = 0;
    forEachPixel(before, after, [&](int x, int y, int away) {
        difference.greatest = std::max(difference.greatest, away);
        if (away >= 0 && away <= tolerance) return;
        ++difference.count;
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x + 1);
        bottom = std::max(bottom, y + 1);
    });
    if (difference.count > 0) difference.bounds = {left, top, right, bottom};
    return difference;
}

PixelBuffer differencePicture(const PixelBuffer& before, const PixelBuffer& after, int tolerance) {
    const int width = std::max(before.width(), after.width());
    const int height = std::max(before.height(), after.height());
    PixelBuffer picture(std::int64_t{width} + before.width() + after.width() + std::int64_t{4} * gap,
                        std::int64_t{height} + std::int64_t{2} * gap);
    for (int y = 0; y < picture.height(); ++y) std::fill_n(picture.row(y), picture.width(), ground);
    const int second = 2 * gap + before.width();
    const int third = second + gap + after.width();
    copyTo(picture, before, gap, false);
    copyTo(picture, after, second, false);
    copyTo(picture, after, third, true);
    forEachPixel(before, after, [&](int x, int y, int away) {
        if (away < 0 || away > tolerance) picture.row(gap + y)[third + x] = marked;
    });
    return picture;
}

}  // namespace tavrin::paint
