// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/pixels/scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "tavrin/platform/foundation/budget/meter.h"

namespace tavrin {
namespace {

/// Which source pixels each pixel along an axis is made of, with weights whose sum is one.
class Axis {
public:
    struct Blend {
        int first;
        const float* begin;
        const float* end;
    };

    /// The pixels `begin`…`end` - 1 of `to` that `from` source pixels become.
    Axis(int from, int to, int begin, int end) {
        const double ratio = static_cast<double>(from) / to;
        const double reach = std::max(1.0, ratio);  // one source pixel: interpolates where the picture grows
        starts_.push_back(0);
        for (int i = begin; i < end; ++i) append((i + 0.5) * ratio, reach, from);
    }

    [[nodiscard]] Blend blend(int i) const {
        const auto at = static_cast<std::size_t>(i);
        return {firsts_[at], weights_.data() + starts_[at], weights_.data() + starts_[at + 1]};
    }
    /// The source pixels that any pixel is made of.
    [[nodiscard]] int sourceBegin() const { return firsts_.front(); }
    [[nodiscard]] int sourceEnd() const {
        return firsts_.back() + static_cast<int>(starts_.back() - starts_[starts_.size() - 2]);
    }

private:
    void append(double center, double reach, int from) {
        const double low = center - reach / 2;
        const double high = center + reach / 2;
        const int first = std::clamp(static_cast<int>(std::floor(low)), 0, from - 1);
        const int last = std::clamp(static_cast<int>(std::ceil(high)) - 1, first, from - 1);
        const auto share = [&](int pixel) {
            return std::max(0.0, std::min(high, pixel + 1.0) - std::max(low, static_cast<double>(pixel)));
        };
        double sum = 0;
        for (int pixel = first; pixel <= last; ++pixel) sum += share(pixel);
        for (int pixel = first; pixel <= last; ++pixel) weights_.push_back(static_cast<float>(share(pixel) / sum));
        firsts_.push_back(first);
        starts_.push_back(weights_.size());
    }

    std::vector<int> firsts_;
    std::vector<std::size_t> starts_;
    std::vector<float> weights_;
};

const std::uint8_t* channels(const std::uint32_t* pixels) { return reinterpret_cast<const std::uint8_t*>(pixels); }

/// Blends rows of channels into one; contiguous, so that compilers vectorise it.
void blendRows(const PixelRows& source, const Axis::Blend& blend, int column, std::vector<float>& sum) {
    std::fill(sum.begin(), sum.end(), 0.0F);
    const std::uint32_t* row = source.first + blend.first * source.stride + column;
    for (const float* weight = blend.begin; weight != blend.end; ++weight, row += source.stride) {
        const std::uint8_t* channel = channels(row);
        for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += *weight * static_cast<float>(channel[i]);
    }
}

std::uint32_t blendPixels(const float* pixel, const Axis::Blend& blend) {
    std::array<float, 4> sum{};
    for (const float* weight = blend.begin; weight != blend.end; ++weight, pixel += sum.size())
        for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += *weight * pixel[i];
    std::array<std::uint8_t, 4> bytes{};
    for (std::size_t i = 0; i < sum.size(); ++i) bytes[i] = static_cast<std::uint8_t>(std::min(255.0F, sum[i] + 0.5F));
    std::uint32_t blended = 0;
    std::memcpy(&blended, bytes.data(), sizeof blended);
    return blended;
}

}  // namespace

std::uint64_t scalingCostOfRow(const PixelRows& source, int width, int height, const PixelRect& part) {
    // How many source pixels a pixel is made of along an axis.
    const auto blended = [](int from, int to) { return static_cast<std::uint64_t>(from / to) + 1; };
    const std::uint64_t inRows = blended(source.width, width) * static_cast<std::uint64_t>(part.width());
    return inRows * (blended(source.height, height) + 1);
}

std::vector<std::uint32_t> scaledPixels(const PixelRows& source, int width, int height, const PixelRect& part) {
    const Axis columns(source.width, width, part.x0, part.x1);
    const Axis rows(source.height, height, part.y0, part.y1);
    const int left = columns.sourceBegin();
    std::vector<float> sum(4 * static_cast<std::size_t>(columns.sourceEnd() - left));
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(part.area()));
    const std::uint64_t costOfRow = scalingCostOfRow(source, width, height, part);
    for (int y = 0; y < part.height(); ++y) {
        Meter::ofThisThread().paint(costOfRow);
        blendRows(source, rows.blend(y), left, sum);
        for (int x = 0; x < part.width(); ++x) {
            const Axis::Blend blend = columns.blend(x);
            pixels.push_back(blendPixels(sum.data() + 4 * static_cast<std::ptrdiff_t>(blend.first - left), blend));
        }
    }
    return pixels;
}

}  // namespace tavrin
