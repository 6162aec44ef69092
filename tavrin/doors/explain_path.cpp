// SPDX-License-Identifier: MIT
#include "tavrin/doors/explain_path.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "tavrin/doors/words.h"
#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

/// Lists the ways to a value and to all inside, as errors write them.
void listPaths(const JSON& value, CodingPath& way, std::vector<std::string>& paths) {
    paths.push_back(toText(way));
    const auto step = [&](const auto& key, const JSON& inner) {
        way.emplace_back(key);
        listPaths(inner, way, paths);
        way.pop_back();
    };
    if (const auto* members = std::get_if<JSONObject>(&value.object())) {
        for (const auto& [key, member] : members->members()) step(std::string(key.view()), member);
    } else if (const auto* elements = std::get_if<JSONArray>(&value.object())) {
        for (std::size_t index = 0; index < elements->size(); ++index) step(index, (*elements)[index]);
    }
}

}  // namespace

std::vector<std::size_t> viewsAtPath(const Explanation& explanation, const std::string& path,
                                     std::string_view document) {
    constexpr std::size_t mostCandidates = 10'000;
    CodingPath root;
    std::vector<std::string> paths;
    listPaths(JSON::parse(document), root, paths);
    const bool isThere = std::ranges::find(paths, path) != paths.end();
    paths.resize(std::min(paths.size(), mostCandidates));
    if (!isThere)
        throw TavrinError("Explain", "there is nothing at " + path + " in the document" +
                                         suggestion(path, std::vector<std::string_view>(paths.begin(), paths.end())));
    std::vector<std::size_t> found = viewsAt(explanation, path);
    if (found.empty()) throw TavrinError("Explain", "no view comes from " + path + ": it is not drawn");
    return found;
}

}  // namespace tavrin
