// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <string_view>
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

/// The ways to the values of a document, as errors write them.
class DocumentPaths {
public:
    explicit DocumentPaths(const std::string& document) { list(JSON::parse(document)); }

    [[nodiscard]] bool contain(const std::string& path) const {
        return std::ranges::find(paths_, path) != paths_.end();
    }
    [[nodiscard]] std::string suggestionFor(const std::string& path) const {
        const std::size_t count = std::min(paths_.size(), mostCandidates);
        return suggestion(
            path, std::vector<std::string_view>(paths_.begin(), paths_.begin() + static_cast<std::ptrdiff_t>(count)));
    }

private:
    static constexpr std::size_t mostCandidates = 10'000;

    void list(const JSON& value) {
        paths_.push_back(toText(way_));
        if (const auto* members = std::get_if<JSONObject>(&value.object())) {
            for (const auto& [key, member] : members->members()) step(std::string(key.view()), member);
        } else if (const auto* elements = std::get_if<JSONArray>(&value.object())) {
            for (std::size_t index = 0; index < elements->size(); ++index) step(index, (*elements)[index]);
        }
    }

    template <class Key>
    void step(const Key& key, const JSON& value) {
        way_.emplace_back(key);
        list(value);
        way_.pop_back();
    }

    CodingPath way_;
    std::vector<std::string> paths_;
};

std::vector<std::size_t> viewsAtPath(const Explanation& explanation, const std::string& path, const Source& document) {
    const DocumentPaths paths(document.text);
    if (!paths.contain(path))
        throw TavrinError("Explain", "there is nothing at " + path + " in the document" + paths.suggestionFor(path));
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
