// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/diagnostics.h"

// A document and, behind a line of three dashes, a model: everything that is said about them, and its fixes. Nothing
// may be thrown; there is no precondition handler, so that a violated one ends the process.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view separator = "\n---\n";
    const std::size_t end = input.find(separator);
    const std::string_view document = input.substr(0, end);
    std::optional<std::string_view> model;
    if (end != std::string_view::npos) model = input.substr(end + separator.size());

    tavrin::DiagnoseOptions options;
    options.rooms = {{"small", {120, 80}}};
    options.scale = 1;
    options.date = tavrin::Date{1'795'249'105};
    options.fetchPolicy = tavrin::FetchPolicy::none;
    options.maximumNodes = 2000;
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
