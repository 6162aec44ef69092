// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/svg_names.h"

#include <algorithm>
#include <utility>

namespace tavrin::paint {
namespace {

constexpr std::string_view stems[] = {"surface", "image"};

/// How a text begins that is cut off somewhere.
struct Beginning {
    std::string_view stem = {};  ///< empty: not like a name
    std::size_t length = 0;      ///< of the name; 0: there is no number
    bool mayGoOn = false;        ///< it is all of the text
};

Beginning beginningOf(std::string_view text) {
    for (const std::string_view stem : stems) {
        if (text.size() < stem.size() && stem.starts_with(text)) return {stem, 0, true};
        if (!text.starts_with(stem)) continue;
        const std::size_t end = std::min(text.find_first_not_of("0123456789", stem.size()), text.size());
        return {stem, end > stem.size() ? end : 0, end == text.size()};
    }
    return {};
}

}  // namespace

void SVGNames::append(std::string_view piece, std::string& text) {
    if (waiting_.empty()) return rename(piece, text, false);
    const std::string whole = std::exchange(waiting_, {}).append(piece);
    rename(whole, text, false);
}

void SVGNames::finish(std::string& text) { rename(std::exchange(waiting_, {}), text, true); }

void SVGNames::rename(std::string_view rest, std::string& text, bool isLast) {
    // A name stands after a quotation mark where it is given, after a hash where it is used.
    for (std::size_t mark; (mark = rest.find_first_of("\"#")) != std::string_view::npos;) {
        const auto [stem, length, mayGoOn] = beginningOf(rest.substr(mark + 1));
        if (mayGoOn && !isLast) {
            text += rest.substr(0, mark);
            waiting_ = rest.substr(mark);
            return;
        }
        text += rest.substr(0, mark + 1);
        rest.remove_prefix(mark + 1);
        if (length == 0) continue;
        const std::string_view name = rest.substr(0, length);
        auto known = numbers_.find(name);
        if (known == numbers_.end()) known = numbers_.emplace(name, numbers_.size() + 1).first;
        text.append(stem).append(std::to_string(known->second));
        rest.remove_prefix(length);
    }
    text += rest;
}

}  // namespace tavrin::paint
