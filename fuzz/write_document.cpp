// SPDX-License-Identifier: MIT
#include "fuzz/widget_input.h"

// A document and a model, drawn in every format but PNG.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto options = smallOptions();
    withDocument({data, size}, options, [&](const tavrin::BoundDocument& document) {
        (void)document.widget(options).encode(tavrin::PictureFormat::svg);
        (void)document.widget(options).encode(tavrin::PictureFormat::pdf);
        (void)document.widget(options).encode(tavrin::PictureFormat::webp);
        (void)document.widget(options).encode(tavrin::PictureFormat::jpeg);
    });
    return 0;
}
