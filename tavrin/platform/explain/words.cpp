// SPDX-License-Identifier: MIT
#include "tavrin/platform/explain/words.h"

#include <cmath>

#include <fmt/format.h>

#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin::explain {

std::string inWords(double length) {
    if (!std::isfinite(length)) return length > 0 ? "infinite" : "-infinite";
    std::string text = fmt::format("{:.2f}", length);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string inWords(Size size) { return inWords(size.width) + " × " + inWords(size.height); }

std::string inWords(const layout::Proposal& proposal) {
    const auto dimension = [](const std::optional<double>& length) { return length ? inWords(*length) : "ideal"; };
    return dimension(proposal.width) + " × " + dimension(proposal.height);
}

std::string inWords(Point point) { return inWords(point.x) + ", " + inWords(point.y); }

std::string ordinal(std::size_t number) {
    const std::size_t last = number % 10;
    const bool isTeen = number / 10 % 10 == 1;
    const std::string_view ending = isTeen || last == 0 || last > 3 ? "th" : last == 1 ? "st" : last == 2 ? "nd" : "rd";
    return fmt::format("{}{}", number, ending);
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::string excerpt(std::string_view text, std::size_t characters) {
    std::string shown = "\"";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = decodeUtf8(text, at).length;
        if (characters-- == 0) return shown + "…\"";
        const bool isControl = static_cast<unsigned char>(text[at]) < 0x20 || text[at] == 0x7F;
        shown += isControl ? " " : text.substr(at, length);
        at += length;
    }
    return shown + "\"";
}

std::string_view lengthAlong(layout::Axis axis) { return axis == layout::Axis::horizontal ? "width" : "height"; }

void append(std::string& list, std::string_view separator, std::string_view part) {
    if (!list.empty() && !part.empty()) list += separator;
    list += part;
}

}  // namespace tavrin::explain
