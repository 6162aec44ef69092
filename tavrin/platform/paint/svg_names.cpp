// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/svg_names.h"

#include <cstddef>
#include <map>

namespace tavrin::paint {

std::string withStableNames(std::string_view svg) {
    constexpr std::string_view stems[] = {"surface", "image"};
    std::map<std::string_view, std::size_t> numbers;
    std::string result;
    result.reserve(svg.size());
    // A name stands after a quotation mark where it is given, after a hash where it is used.
    for (std::size_t mark; (mark = svg.find_first_of("\"#")) != std::string_view::npos;) {
        result += svg.substr(0, mark + 1);
        svg.remove_prefix(mark + 1);
        for (const std::string_view stem : stems) {
            if (!svg.starts_with(stem)) continue;
            const std::string_view name = svg.substr(0, svg.find_first_not_of("0123456789", stem.size()));
            if (name == stem) continue;
            result += stem;
            result += std::to_string(numbers.try_emplace(name, numbers.size() + 1).first->second);
            svg.remove_prefix(name.size());
            break;
        }
    }
    return result += svg;
}

}  // namespace tavrin::paint
