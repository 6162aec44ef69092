// SPDX-License-Identifier: MIT
#include "fuzz/widget_input.h"

// A document and a model, drawn at a few moments; how the animation is written is in the last byte, so that documents
// are seeds as they are.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::uint8_t choice = data[size - 1];
    const bool isWebP = (choice & 1) != 0;
    const double step = 1 + 60 * (choice >> 1);
    const auto options = smallOptions();
    withDocument({data, size - 1}, options, [&](const tavrin::BoundDocument& document) {
        tavrin::AnimationRenderer renderer = document.animation(options);
        const tavrin::Date first = *options.date;
        (void)renderer.encode({.first = first, .last = {first.secondsSince1970 + 4 * step}, .step = step},
                              {.format = isWebP ? tavrin::AnimationFormat::webp : tavrin::AnimationFormat::png});
    });
    return 0;
}
