#include "tavrin/values/expression_path.h"

#include <optional>
#include <string>

#include "tavrin/platform/foundation/precondition.h"

namespace tavrin {
namespace {

/// The first component with "]" before "[".
std::optional<std::string_view> reversedComponent(std::string_view inner) {
    while (!inner.empty()) {
        const std::string_view component = inner.substr(0, inner.find('.'));
        inner.remove_prefix(std::min(component.size() + 1, inner.size()));
        const std::size_t open = component.find('[');
        if (open != std::string_view::npos && component.find(']') < open) return component;
    }
    return std::nullopt;
}

}  // namespace

void ExpressionWalk::requireOrderedBrackets(std::string_view inner) {
    if (const auto component = reversedComponent(inner))
        preconditionFailure("']' before '[' in the expression component " + std::string(*component));
}

void ExpressionWalk::splitIndex() {
    const std::size_t open = key_.find('[');
    const std::size_t close = open == none ? none : key_.find(']');
    if (close == none) return;
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

bool hasReversedBrackets(std::string_view inner) { return reversedComponent(inner).has_value(); }

}  // namespace tavrin
