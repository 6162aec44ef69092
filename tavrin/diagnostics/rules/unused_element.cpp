// SPDX-License-Identifier: MIT
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/values/expression_path.h"

namespace tavrin {
namespace {

using Index = JSONOutline::Index;

/// The lists of a model of which a document uses single elements.
class UsedLists {
public:
    explicit UsedLists(const JSONOutline& model) : model_(model), paths_(model) {}

    void add(std::string_view expression) {
        const CodingPath path = pathInModel(expression);
        CodingPath way;
        for (const CodingKey& step : path) {
            const bool isIndex = std::holds_alternative<std::size_t>(step);
            const auto list = isIndex ? paths_.find(way) : std::nullopt;
            way.push_back(step);
            const auto element = list ? paths_.find(way) : std::nullopt;
            if (element && model_.isArray(*list)) used_[*list].insert(*element);
        }
        // What is used as a whole is used.
        if (const auto value = paths_.find(path); value && model_.isArray(*value)) wholes_.insert(*value);
    }

    /// Calls `visit(usedCount, unused)` for each list with elements that nothing uses.
    template <class Visit>
    void forEachPartlyUsed(const Visit& visit) const {
        for (const auto& entry : used_) {
            const auto list = entry.first;
            const auto& used = entry.second;
            if (wholes_.contains(list)) continue;
            std::vector<Index> unused;
            model_.forEachChild(list, [&](Index element) {
                if (!used.contains(element)) unused.push_back(element);
            });
            if (!unused.empty()) visit(used.size(), unused);
        }
    }

private:
    const JSONOutline& model_;
    OutlinePaths paths_;
    std::map<Index, std::set<Index>> used_;
    std::set<Index> wholes_;
};

bool isOfModel(std::string_view expression) {
    return isWellFormed(expression) && expressionPath(innerOf(expression)).front() == JSONKey("initServerParam");
}

}  // namespace

void findUnusedElements(const WrittenSubject& subject, Findings& findings) {
    if (!subject.model) return;
    const JSONOutline& model = subject.model->outline();
    UsedLists lists(model);
    forEachProperty(subject.document, [&](const WrittenRecord&, const WrittenMember& member) {
        const auto expression = expressionIn(subject.document, member);
        if (expression && isOfModel(*expression)) lists.add(*expression);
    });
    lists.forEachPartlyUsed([&](std::size_t used, const std::vector<Index>& unused) {
        const std::string more = unused.size() > 1 ? " and " + std::to_string(unused.size() - 1) + " more" : "";
        findings.add(
            Rule::unusedElement, model, unused.front(),
            "nothing uses this" + more + " of the " + std::to_string(used + unused.size()) + " elements of the list",
            TextRole::model);
    });
}

}  // namespace tavrin
