// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/tavrin.h"

// A document and, behind a line of three dashes, a model: through decoding, binding, layout and drawing.

namespace {

/// Small enough that one input takes milliseconds, large enough that everything is reached.
constexpr std::size_t nodesDrawn = 2000;

void renderOnce(std::string_view document, std::optional<std::string_view> model) {
    tavrin::Context context;
    context.date = tavrin::Date{1'795'249'105};
    context.maximumNodes = nodesDrawn;
    context.fetchPolicy = tavrin::FetchPolicy::none;
    tavrin::RenderOptions options;
    options.size = {120, 80};
    options.scale = 1;
    options.rounded = true;
    tavrin::ImageRenderer renderer(tavrin::TavrinEngine().loadView(document, model, context), options);
    (void)renderer.layoutText();
    (void)renderer.targetsText();
    (void)renderer.encode(tavrin::PictureFormat::png);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavrin::setPreconditionHandler(tavrin::throwPreconditionError);
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view separator = "\n---\n";
    const std::size_t end = input.find(separator);
    const std::string_view document = input.substr(0, end);
    try {
        if (end == std::string_view::npos) {
            renderOnce(document, std::nullopt);
        } else {
            renderOnce(document, input.substr(end + separator.size()));
        }
    } catch (const std::exception&) {  // an error is an answer; a crash is none
    }
    return 0;
}
