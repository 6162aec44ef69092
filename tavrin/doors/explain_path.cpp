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

/// Calls `visit` with each value that a value holds, while `way` leads there, until it returns false.
template <class Visit>
bool visitInside(const JSON& value, CodingPath& way, const Visit& visit) {
    const auto step = [&](const auto& key, const JSON& inner) {
        way.emplace_back(key);
        const bool goesOn = visit(inner);
        way.pop_back();
        return goesOn;
    };
    if (const auto* members = std::get_if<JSONObject>(&value.object())) {
        for (const auto& [key, member] : members->members())
            if (!step(std::string(key.view()), member)) return false;
    } else if (const auto* elements = std::get_if<JSONArray>(&value.object())) {
        for (std::size_t index = 0; index < elements->size(); ++index)
            if (!step(index, (*elements)[index])) return false;
    }
    return true;
}

/// Whether a path, as errors write it, leads to a value or into it. Looks only where it may lead.
bool isAt(const JSON& value, CodingPath& way, std::string_view path) {
    const std::string here = toText(way);
    if (here == path) return true;
    if (!way.empty() && !path.starts_with(here)) return false;
    return !visitInside(value, way, [&](const JSON& inner) { return !isAt(inner, way, path); });
}

/// The paths to a value and to what is inside, as many as may be suggested.
bool listPaths(const JSON& value, CodingPath& way, std::vector<std::string>& paths, std::size_t& room) {
    constexpr std::size_t bytesOfPath = sizeof(std::string);
    paths.push_back(toText(way));
    const std::size_t taken = bytesOfPath + paths.back().size();
    room -= std::min(room, taken);
    return room > 0 && visitInside(value, way, [&](const JSON& inner) { return listPaths(inner, way, paths, room); });
}

}  // namespace

std::vector<std::size_t> viewsAtPath(const Explanation& explanation, const std::string& path,
                                     std::string_view document) {
    const JSON root = JSON::parse(document);
    CodingPath way;
    if (!isAt(root, way, path)) {
        std::size_t room = std::size_t{1} << 20;  // bytes
        std::vector<std::string> paths;
        listPaths(root, way, paths, room);
        throw TavrinError("Explain", "there is nothing at " + path + " in the document" +
                                         suggestion(path, std::vector<std::string_view>(paths.begin(), paths.end())));
    }
    std::vector<std::size_t> found = viewsAt(explanation, path);
    if (found.empty()) throw TavrinError("Explain", "no view comes from " + path + ": it is not drawn");
    return found;
}

}  // namespace tavrin
