// SPDX-License-Identifier: MIT
#include "fuzz/widget_input.h"
#include "tavrin/platform/explain/explanation.h"

// A document and a model, and why each view lies where it does.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto options = smallOptions();
    options.trace = tavrin::WidgetTrace::reasons;
    withDocument({data, size}, options, [&](const tavrin::BoundDocument& document) {
        const tavrin::Explanation explanation = document.widget(options).explanation();
        (void)tavrin::explanationJSON(explanation);
        (void)tavrin::outlineText(explanation);
    });
    return 0;
}
