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

/// Goes through the path of an expression, step by step, within its text.
class PathWalk {
    static constexpr std::size_t none = std::string_view::npos;

public:
    explicit PathWalk(std::string_view inner) : rest_(inner), hasIndices_(inner.find('[') != none) {}

    /// Goes to the next step; false after the last.
    bool next() {
        isIndex_ = std::exchange(indexIsNext_, false);
        if (isIndex_) return true;
        while (!rest_.empty()) {
            key_ = rest_.substr(0, rest_.find('.'));
            rest_.remove_prefix(std::min(key_.size() + 1, rest_.size()));
            if (key_.empty()) continue;
            if (hasIndices_) splitIndex();
            return true;
        }
        return false;
    }

    /// Whether the step is an index of an array, or else a key.
    [[nodiscard]] bool isIndex() const { return isIndex_; }
    [[nodiscard]] std::int64_t index() const { return index_; }
    [[nodiscard]] std::string_view key() const { return key_; }

private:
    /// Leaves the key of a component with brackets; an index between them is the next step.
    void splitIndex() {
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

    std::string_view rest_;
    bool hasIndices_;  // whether any component may have one
    std::string_view key_;
    std::int64_t index_ = 0;
    bool isIndex_ = false;
    bool indexIsNext_ = false;
};

std::vector<JSONKey> pathOf(std::string_view inner) {
    std::vector<JSONKey> path;
    PathWalk walk(inner);
    while (walk.next()) {
        if (walk.isIndex()) {
            path.emplace_back(walk.index());
        } else {
            path.emplace_back(std::string(walk.key()));
        }
    }
    return path;
}

[[noreturn]] void failPath(std::string_view message, std::string_view inner, std::size_t skipped) {
    const std::vector<JSONKey> path = pathOf(inner);
    throw ModelContextError(std::string(message) + describe(std::span(path).subspan(skipped)));
}

const JSON* memberOf(const JSON& value, const PathWalk& step) {
    return step.isIndex() ? value.find(step.index()) : value.find(step.key());
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
    const std::string_view store = walk.next() ? walk.key() : std::string_view();
    if (!walk.next()) failPath("KeyPath Invalid: ", inner, 0);
    if (store == "initServerParam") {
        const JSON* value = &model;
        do {
            value = memberOf(*value, walk);
            if (value == nullptr) failPath("key path not found in model: ", inner, 1);
        } while (walk.next());
        return {value, false};
    }
    if (store == "initEnvironment") {
        if (walk.isIndex())
            throw ModelContextError("Environment Variable Key must be stirng, got " + toText(walk.index()));
        if (const auto entry = environment.find(walk.key()); entry != environment.end()) return {&entry->second, true};
        throw ModelContextError("Environment Variable not exist for key: " + std::string(walk.key()));
    }
    throw ModelContextError("Invalid keypath store: " + std::string(store));
}

void ModelContext::failConversion(const Found& found, const std::string& type) {
    throw ModelContextError((found.inEnvironment ? "Env unable to convert value " : "unable to convert value ") +
                            found.value->description() + " to " + type);
}

}  // namespace tavrin
