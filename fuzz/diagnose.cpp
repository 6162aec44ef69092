// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <string>

#include "fuzz/widget_input.h"
#include "tavrin/diagnostics.h"

// A document and a model: everything that is said about them, and its fixes. Nothing may be thrown; there is no
// precondition handler, so that a violated one ends the process.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto [document, model] = WidgetInput(data, size);
    auto options = smallOptions<tavrin::DiagnoseOptions>();
    options.rooms = {options.room};
    const std::vector<tavrin::Diagnostic> found = tavrin::diagnose(document, model, options);
    for (const tavrin::Diagnostic& diagnostic : found) {
        const auto& range = diagnostic.range;
        const std::string_view text = diagnostic.role == tavrin::TextRole::model ? model.value_or("") : document;
        if (range && (range->end.offset > text.size() || range->begin.offset > range->end.offset)) std::abort();
    }
    (void)tavrin::toJSON(found);
    (void)tavrin::diagnose(tavrin::applyFixes(document, found).text, model, options);
    return 0;
}
