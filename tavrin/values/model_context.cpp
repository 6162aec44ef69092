#include "tavrin/values/model_context.h"

#include <algorithm>
#include <utility>

#include "tavrin/platform/foundation/precondition.h"

namespace tavrin {
namespace {

std::string debugDescription(std::string_view key) {
    std::string text = "\"";
    for (const char c : key) {
        switch (c) {
            case '"': text += "\\\""; break;
            case '\\': text += "\\\\"; break;
            case '\n': text += "\\n"; break;
            case '\r': text += "\\r"; break;
            case '\t': text += "\\t"; break;
            case '\0': text += "\\0"; break;
            default: text += c;
        }
    }
    return text + '"';
}

std::string describe(std::span<const JSONKey> path) {
    std::string text = "[";
    for (const JSONKey& element : path) {
        if (text.size() > 1) text += ", ";
        const auto* key = std::get_if<std::string>(&element);
        text += key != nullptr ? debugDescription(*key) : toText(std::get<std::int64_t>(element));
    }
    return text + ']';
}

/// An element of an expression's path, still within the expression's text.
struct PathStep {
    std::string_view key;
    std::int64_t index = 0;
    bool isIndex = false;
};

/// Goes through the path of an expression, step by step.
class PathWalk {
    static constexpr std::size_t none = std::string_view::npos;

public:
    explicit PathWalk(std::string_view inner) : rest_(inner), hasIndices_(inner.find('[') != none) {}

    std::optional<PathStep> next() {
        if (std::exchange(indexIsNext_, false)) return PathStep{{}, index_, true};
        while (!rest_.empty()) {
            const std::string_view component = rest_.substr(0, rest_.find('.'));
            rest_.remove_prefix(std::min(component.size() + 1, rest_.size()));
            if (component.empty()) continue;
            if (!hasIndices_) return PathStep{component};
            const std::size_t open = component.find('[');
            const std::size_t close = open == none ? none : component.find(']');
            return PathStep{close == none ? component : splitIndex(component, open, close)};
        }
        return std::nullopt;
    }

private:
    /// The key of a component with brackets; an index between them is the next step.
    std::string_view splitIndex(std::string_view component, std::size_t open, std::size_t close) {
        if (close < open) preconditionFailure("']' before '[' in the expression component " + std::string(component));
        const auto index = intFromText<std::int64_t>(component.substr(open + 1, close - open - 1));
        if (!index) return component;
        index_ = *index;
        indexIsNext_ = true;
        return component.substr(0, open);
    }

    std::string_view rest_;
    bool hasIndices_;  // whether any component may have one
    std::int64_t index_ = 0;
    bool indexIsNext_ = false;
};

std::vector<JSONKey> pathOf(std::string_view inner) {
    std::vector<JSONKey> path;
    PathWalk walk(inner);
    while (const std::optional<PathStep> step = walk.next()) {
        if (step->isIndex) {
            path.emplace_back(step->index);
        } else {
            path.emplace_back(std::string(step->key));
        }
    }
    return path;
}

[[noreturn]] void failPath(std::string_view message, std::string_view inner, std::size_t skipped) {
    const std::vector<JSONKey> path = pathOf(inner);
    throw ModelContextError(std::string(message) + describe(std::span(path).subspan(skipped)));
}

const JSON* memberOf(const JSON& value, const PathStep& step) {
    return step.isIndex ? value.find(step.index) : value.find(step.key);
}

}  // namespace

const JSON* ModelContext::getValueFrom(std::span<const JSONKey> keyPath, const JSON& model) {
    const JSON* current = &model;
    for (const JSONKey& element : keyPath) {
        const auto* key = std::get_if<std::string>(&element);
        current = key != nullptr ? current->find(*key) : current->find(std::get<std::int64_t>(element));
        if (current == nullptr) return nullptr;
    }
    return current;
}

ModelContext::Found ModelContext::find(std::string_view expression) const {
    if (!isExpression(expression)) throw ModelContextError(" invalid model expression " + std::string(expression));
    const std::string_view inner = expression.substr(2, expression.size() - 4);
    PathWalk walk(inner);
    const std::optional<PathStep> store = walk.next();
    std::optional<PathStep> step = walk.next();
    if (!step) failPath("KeyPath Invalid: ", inner, 0);
    if (store->key == "initServerParam") {
        const JSON* value = &model;
        for (; step; step = walk.next()) {
            value = memberOf(*value, *step);
            if (value == nullptr) failPath("key path not found in model: ", inner, 1);
        }
        return {value, false};
    }
    if (store->key == "initEnvironment") {
        if (step->isIndex)
            throw ModelContextError("Environment Variable Key must be stirng, got " + toText(step->index));
        if (const auto entry = environment.find(step->key); entry != environment.end()) return {&entry->second, true};
        throw ModelContextError("Environment Variable not exist for key: " + std::string(step->key));
    }
    throw ModelContextError("Invalid keypath store: " + std::string(store->key));
}

void ModelContext::failConversion(const Found& found, const std::string& type) {
    throw ModelContextError((found.inEnvironment ? "Env unable to convert value " : "unable to convert value ") +
                            found.value->description() + " to " + type);
}

}  // namespace tavrin
