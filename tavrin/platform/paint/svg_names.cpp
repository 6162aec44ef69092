#include "tavrin/platform/paint/svg_names.h"

#include <cstddef>
#include <map>

namespace tavrin::paint {

std::string withStableNames(std::string_view svg) {
    constexpr std::string_view stem = "surface";
    std::map<std::string_view, std::size_t> numbers;
    std::string result;
    result.reserve(svg.size());
    for (std::size_t found; (found = svg.find(stem)) != std::string_view::npos;) {
        const bool isName = found > 0 && (svg[found - 1] == '"' || svg[found - 1] == '#');
        result += svg.substr(0, found + stem.size());
        svg.remove_prefix(found + stem.size());
        if (!isName) continue;
        const std::string_view number = svg.substr(0, svg.find_first_not_of("0123456789"));
        result += std::to_string(numbers.try_emplace(number, numbers.size() + 1).first->second);
        svg.remove_prefix(number.size());
    }
    return result += svg;
}

}  // namespace tavrin::paint
