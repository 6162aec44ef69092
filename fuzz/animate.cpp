// SPDX-License-Identifier: MIT
#include "fuzz/widget_input.h"

// How an animation is written, in the first byte; then a document and a model, drawn at a few moments.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool isWebP = (data[0] & 1) != 0;
    const double step = 1 + 60 * (data[0] >> 1);
    const auto options = smallOptions();
    withDocument({data + 1, size - 1}, options, [&](const tavrin::BoundDocument& document) {
        tavrin::AnimationRenderer renderer = document.animation(options);
        const tavrin::Date first = *options.date;
        (void)renderer.encode({.first = first, .last = {first.secondsSince1970 + 4 * step}, .step = step},
                              {.format = isWebP ? tavrin::AnimationFormat::webp : tavrin::AnimationFormat::png});
    });
    return 0;
}
