// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/bound_model.h"

#include <utility>

#include "tavrin/values/expression_path.h"

namespace tavrin {

std::optional<BoundModel> BoundModel::read(std::string_view text) {
    try {
        return BoundModel(ModelContext(JSON::parse(text), {}), text);
    } catch (const PlacedError&) {  // loading reports it
        return std::nullopt;
    }
}

std::optional<std::string> BoundModel::find(std::string_view expression) const {
    try {
        return std::string(context_.resolve<SharedText>(expression));
    } catch (const ModelContextError&) {
        return std::nullopt;
    }
}

CodingPath pathInModel(std::string_view expression) {
    CodingPath path;
    const std::vector<JSONKey> keys = expressionPath(innerOf(expression));
    for (std::size_t i = 1; i < keys.size(); ++i) {
        if (const auto* key = std::get_if<std::string>(&keys[i]))
            path.emplace_back(*key);
        else
            path.emplace_back(static_cast<std::size_t>(std::get<std::int64_t>(keys[i])));
    }
    return path;
}

bool isWellFormed(std::string_view expression) {
    if (!isExpression(expression)) return false;
    ExpressionWalk walk(innerOf(expression));
    if (!walk.next() || (walk.key() != "initServerParam" && walk.key() != "initEnvironment")) return false;
    if (!walk.next()) return false;
    while (walk.next()) {
    }
    return !walk.fault();
}

}  // namespace tavrin
