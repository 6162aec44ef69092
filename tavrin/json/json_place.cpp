// SPDX-License-Identifier: MIT
#include "tavrin/json/json_place.h"

#include <algorithm>

#include "tavrin/json/json_scan.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

std::size_t startOfLine(std::string_view text, std::size_t offset) {
    if (offset == 0) return 0;
    return text.rfind('\n', offset - 1) + 1;  // behind no line end: npos + 1, which is 0
}

}  // namespace

TextPlace placeAt(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    const std::string_view before = text.substr(0, offset);
    const std::size_t start = startOfLine(text, offset);
    const auto lineEnds = static_cast<std::size_t>(std::ranges::count(before, '\n'));
    return {offset, lineEnds + 1, countCodePoints(before.substr(start)) + 1};
}

std::string_view lineAt(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    const std::size_t start = startOfLine(text, offset);
    std::string_view line = text.substr(start, std::min(text.find('\n', offset), text.size()) - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::optional<std::size_t> locate(std::string_view text, const CodingPath& path) {
    using Event = JSONScanner::Event;
    std::size_t depth = 0;    // how many containers are open
    std::size_t reached = 0;  // values on the way, the root among them; the last one is as deep as that
    CodingKey step;           // to the next child of the last one
    for (JSONScanner scanner(text); scanner.next();) {
        const Event event = scanner.event();
        if (event == Event::key) {
            if (depth == reached) step = JSONScanner::unquoted(scanner.raw());
            continue;
        }
        if (event == Event::end) {
            if (depth-- == reached) return std::nullopt;
            continue;
        }
        if (depth == reached && (reached == 0 || step == path[reached - 1])) {
            if (reached++ == path.size()) return scanner.begin();
            if (event == Event::scalar) return std::nullopt;
            step = std::size_t{0};  // an array's; an object's comes with its keys
        } else if (auto* const index = std::get_if<std::size_t>(&step); index && depth == reached) {
            ++*index;
        }
        if (event != Event::scalar) ++depth;
    }
    return std::nullopt;
}

}  // namespace tavrin
