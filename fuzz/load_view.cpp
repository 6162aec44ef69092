// SPDX-License-Identifier: MIT
#include "fuzz/widget_input.h"

// A document and a model: through decoding, binding, layout and drawing to pixels.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto options = smallOptions();
    withDocument({data, size}, options, [&](const tavrin::BoundDocument& document) {
        tavrin::Widget widget = document.widget(options);
        (void)document.treeText();
        (void)widget.layoutText();
        (void)widget.targetsText();
        (void)widget.encode(tavrin::PictureFormat::png);
    });
    return 0;
}
