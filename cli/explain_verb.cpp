// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "cli/production.h"
#include "cli/suggestion.h"
#include "cli/verbs.h"
#include "tavrin/json/json.h"
#include "tavrin/platform/explain/explanation.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

/// Lists the ways to a value and to all inside, as errors write them.
void listPaths(const JSON& value, CodingPath& way, std::vector<std::string>& paths) {
    paths.push_back(toText(way));
    const auto step = [&](CodingKey key, const JSON& inner) {
        way.push_back(std::move(key));
        listPaths(inner, way, paths);
        way.pop_back();
    };
    if (const auto* members = std::get_if<JSONObject>(&value.object())) {
        for (const auto& [key, member] : members->members()) step(std::string(key.view()), member);
    } else if (const auto* elements = std::get_if<JSONArray>(&value.object())) {
        for (std::size_t index = 0; index < elements->size(); ++index) step(index, (*elements)[index]);
    }
}

std::vector<std::size_t> viewsAtPath(const Explanation& explanation, const std::string& path, const Source& document) {
    constexpr std::size_t mostCandidates = 10'000;
    CodingPath root;
    std::vector<std::string> paths;
    listPaths(JSON::parse(document.text), root, paths);
    const bool isThere = std::ranges::find(paths, path) != paths.end();
    paths.resize(std::min(paths.size(), mostCandidates));
    if (!isThere)
        throw TavrinError("Explain", "there is nothing at " + path + " in the document" +
                                         suggestion(path, std::vector<std::string_view>(paths.begin(), paths.end())));
    std::vector<std::size_t> found = viewsAt(explanation, path);
    if (found.empty()) throw TavrinError("Explain", "no view comes from " + path + ": it is not drawn");
    return found;
}

/// An outline, or the views at the arguments' path in sentences; or either as JSON. Throws `TavrinError` of kind
/// "Explain" for a path that names nothing that is drawn.
std::string explained(const ExplainArguments& arguments, const Production& work) {
    const Explanation explanation = work.document.widget(work.options).explanation();
    const bool isJSON = arguments.format == TextFormat::json;
    if (!arguments.path) return isJSON ? explanationJSON(explanation) : outlineText(explanation);
    const std::vector<std::size_t> chosen = viewsAtPath(explanation, *arguments.path, work.source);
    return isJSON ? explanationJSON(explanation, chosen) : explanationText(explanation, chosen);
}

}  // namespace

int run(const ExplainArguments& arguments, const Reporter& reporter) {
    return printAll(arguments, reporter, [&](const Production& work) { return explained(arguments, work); });
}

}  // namespace tavrin::cli
