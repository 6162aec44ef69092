#include "cli/suggestion.h"

#include <algorithm>
#include <vector>

#include "tavrin/platform/foundation/edit_distance.h"

namespace tavrin::cli {
namespace {

std::string_view withoutDashes(std::string_view word) {
    return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

}  // namespace

std::string suggestion(std::string_view word, std::span<const std::string_view> known) {
    std::vector<std::string_view> bare;
    for (const std::string_view candidate : known) bare.push_back(withoutDashes(candidate));
    const auto closest = closestMatch(withoutDashes(word), bare);
    if (!closest) return {};
    const auto index = static_cast<std::size_t>(std::find(bare.begin(), bare.end(), *closest) - bare.begin());
    return "; did you mean '" + std::string(known[index]) + "'?";
}

}  // namespace tavrin::cli
