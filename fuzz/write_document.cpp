// SPDX-License-Identifier: MIT
#include "fuzz/widget_input.h"

// A document and a model, drawn as SVG and as PDF.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto options = smallOptions();
    withDocument({data, size}, options, [&](const tavrin::BoundDocument& document) {
        (void)document.widget(options).encode(tavrin::PictureFormat::svg);
        (void)document.widget(options).encode(tavrin::PictureFormat::pdf);
    });
    return 0;
}
