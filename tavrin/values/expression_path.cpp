// SPDX-License-Identifier: MIT
#include "tavrin/values/expression_path.h"

#include <optional>
#include <string>

#include "tavrin/platform/foundation/precondition.h"

namespace tavrin {

void ExpressionWalk::splitIndex() {
    const std::size_t open = key_.find('[');
    const std::size_t close = open == none ? none : key_.find(']');
    if (close == none) return;
    if (close < open) preconditionFailure("']' before '[' in the expression component " + std::string(key_));
    const auto index = intFromText<std::int64_t>(key_.substr(open + 1, close - open - 1));
    if (!index) return;
    index_ = *index;
    indexIsNext_ = true;
    key_ = key_.substr(0, open);
}

std::vector<JSONKey> expressionPath(std::string_view inner) {
    std::vector<JSONKey> path;
    ExpressionWalk walk(inner);
    while (walk.next()) {
        if (walk.isIndex()) {
            path.emplace_back(walk.index());
        } else {
            path.emplace_back(std::string(walk.key()));
        }
    }
    return path;
}

bool hasReversedBrackets(std::string_view inner) {
    while (!inner.empty()) {
        const std::string_view component = inner.substr(0, inner.find('.'));
        inner.remove_prefix(std::min(component.size() + 1, inner.size()));
        const std::size_t open = component.find('[');
        if (open != std::string_view::npos && component.find(']') < open) return true;
    }
    return false;
}

}  // namespace tavrin
