#include "tavrin/platform/text/area_average.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tavrin::text {
namespace {

using Picture = Handle<cairo_surface_t, cairo_surface_destroy>;

/// The source pixels that one pixel is made of, with weights whose sum is one.
struct Span {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Span> spansOf(int from, int to) {
    std::vector<Span> spans(static_cast<std::size_t>(to));
    const double ratio = static_cast<double>(from) / to;
    const double reach = std::max(1.0, ratio);  // at least one pixel wide: interpolates when the picture grows
    for (int i = 0; i < to; ++i) {
        const double begin = (i + 0.5) * ratio - reach / 2;
        const double end = begin + reach;
        const int first = std::clamp(static_cast<int>(std::floor(begin)), 0, from - 1);
        const int last = std::clamp(static_cast<int>(std::ceil(end)) - 1, first, from - 1);
        Span& span = spans[static_cast<std::size_t>(i)];
        span.first = first;
        double sum = 0;
        for (int pixel = first; pixel <= last; ++pixel) {
            const double weight =
                std::max(0.0, std::min(end, pixel + 1.0) - std::max(begin, static_cast<double>(pixel)));
            span.weights.push_back(static_cast<float>(weight));
            sum += weight;
        }
        for (auto& weight : span.weights) weight /= static_cast<float>(sum);
    }
    return spans;
}

const std::uint8_t* rowOf(cairo_surface_t* picture, int row) {
    return cairo_image_surface_get_data(picture) + std::ptrdiff_t{cairo_image_surface_get_stride(picture)} * row;
}

/// The picture's rows narrowed to `width` pixels of four channels each.
std::vector<float> narrowed(cairo_surface_t* picture, int width) {
    const int height = cairo_image_surface_get_height(picture);
    const auto spans = spansOf(cairo_image_surface_get_width(picture), width);
    std::vector<float> rows;
    rows.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = rowOf(picture, y);
        for (const auto& span : spans) {
            float sum[4] = {};
            const std::uint8_t* pixel = row + std::ptrdiff_t{span.first} * 4;
            for (const float weight : span.weights)
                for (auto& channel : sum) channel += weight * static_cast<float>(*pixel++);
            rows.insert(rows.end(), std::begin(sum), std::end(sum));
        }
    }
    return rows;
}

}  // namespace

Picture areaAverage(cairo_surface_t* picture, int width, int height) {
    Picture scaled(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    if (cairo_surface_status(scaled.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    cairo_surface_flush(picture);
    const auto rowLength = static_cast<std::size_t>(width) * 4;
    const std::vector<float> rows = narrowed(picture, width);
    const auto spans = spansOf(cairo_image_surface_get_height(picture), height);
    std::vector<float> sum(rowLength);
    cairo_surface_flush(scaled.get());
    std::uint8_t* target = cairo_image_surface_get_data(scaled.get());
    for (const auto& span : spans) {
        std::fill(sum.begin(), sum.end(), 0.0F);
        const float* row = rows.data() + static_cast<std::size_t>(span.first) * rowLength;
        for (const float weight : span.weights) {
            for (std::size_t i = 0; i < rowLength; ++i) sum[i] += weight * row[i];
            row += rowLength;
        }
        std::transform(sum.begin(), sum.end(), target,
                       [](float channel) { return static_cast<std::uint8_t>(std::min(255.0F, channel + 0.5F)); });
        target += cairo_image_surface_get_stride(scaled.get());
    }
    cairo_surface_mark_dirty(scaled.get());
    return scaled;
}

}  // namespace tavrin::text
