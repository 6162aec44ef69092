// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/document_links.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <fmt/format.h>

#include "tavrin/platform/foundation/strings/markup_text.h"

namespace tavrin::paint {
namespace {

/// `text` with a backslash before each of `characters`.
std::string backslashed(std::string_view text, std::string_view characters) {
    std::string escaped;
    for (const char c : text) {
        if (characters.find(c) != std::string_view::npos) escaped += '\\';
        escaped += c;
    }
    return escaped;
}

}  // namespace

bool mayLeadTo(const URL& destination) {
    constexpr std::array<std::string_view, 3> run{"javascript", "vbscript", "data"};
    return std::find(run.begin(), run.end(), destination.scheme()) == run.end();
}

std::string svgLink(const Rect& area, const URL& destination) {
    return fmt::format(
        "<a href=\"{}\"><rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"none\" "
        "pointer-events=\"all\"/></a>\n",
        markupText(destination.string()), area.origin.x, area.origin.y, area.size.width, area.size.height);
}

std::string pdfLinkAttributes(const Rect& area, const URL& destination) {
    // Cairo takes one level of backslashes away and writes the rest into a PDF string as it is.
    const std::string pdfString = backslashed(destination.string(), "()\\");
    return fmt::format("rect=[{} {} {} {}] uri='{}'", area.origin.x, area.origin.y, area.size.width, area.size.height,
                       backslashed(pdfString, "'\\"));
}

}  // namespace tavrin::paint
