// SPDX-License-Identifier: MIT
#include "tavrin/values/expression_path.h"

#include <string>

namespace tavrin {

bool ExpressionWalk::splitIndex() {
    using Kind = ExpressionFault::Kind;
    const std::size_t open = key_.find('[');
    const std::size_t close = key_.find(']');
    if (open == none && close == none) return true;
    if (open == none || close == none || close < open) {
        const bool isReversed = open != none && close < open;
        fault_ = ExpressionFault{isReversed ? Kind::reversedBrackets : Kind::unmatchedBracket, key_};
        return !isReversed;
    }
    const std::string_view between = key_.substr(open + 1, close - open - 1);
    const auto index = intFromText<std::int64_t>(between);
    if (!index) {
        fault_ = ExpressionFault{Kind::noIndex, key_, between};
        return true;
    }
    if (close + 1 < key_.size()) fault_ = ExpressionFault{Kind::ignoredText, key_, between};
    index_ = *index;
    indexIsNext_ = true;
    key_ = key_.substr(0, open);
    return true;
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

std::optional<ExpressionFault> findBracketFault(std::string_view inner) {
    ExpressionWalk walk(inner);
    while (walk.next() && !walk.fault()) {
    }
    return walk.fault();
}

}  // namespace tavrin
