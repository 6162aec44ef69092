#include "tavrin/values/model_context.h"

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

void appendComponent(std::vector<JSONKey>& path, std::string_view component) {
    const std::size_t open = component.find('[');
    const std::size_t close = component.find(']');
    if (open != std::string_view::npos && close != std::string_view::npos) {
        if (close < open) preconditionFailure("']' before '[' in the expression component " + std::string(component));
        if (const auto index = intFromText<std::int64_t>(component.substr(open + 1, close - open - 1))) {
            path.emplace_back(std::string(component.substr(0, open)));
            path.emplace_back(*index);
            return;
        }
    }
    path.emplace_back(std::string(component));
}

std::vector<JSONKey> parse(std::string_view inner) {
    std::vector<JSONKey> path;
    while (!inner.empty()) {
        const std::size_t dot = inner.find('.');
        if (const std::string_view component = inner.substr(0, dot); !component.empty()) appendComponent(path, component);
        inner.remove_prefix(dot == std::string_view::npos ? inner.size() : dot + 1);
    }
    return path;
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
    const std::vector<JSONKey> path = parse(expression.substr(2, expression.size() - 4));
    const auto* store = path.empty() ? nullptr : std::get_if<std::string>(path.data());
    if (path.size() < 2 || store == nullptr) throw ModelContextError("KeyPath Invalid: " + describe(path));
    if (*store == "initServerParam") {
        const auto rest = std::span(path).subspan(1);
        if (const JSON* value = getValueFrom(rest, model)) return {value, false};
        throw ModelContextError("key path not found in model: " + describe(rest));
    }
    if (*store == "initEnvironment") {
        const auto* key = std::get_if<std::string>(&path[1]);
        if (key == nullptr)
            throw ModelContextError("Environment Variable Key must be stirng, got " +
                                    toText(std::get<std::int64_t>(path[1])));
        if (const auto entry = environment.find(*key); entry != environment.end()) return {&entry->second, true};
        throw ModelContextError("Environment Variable not exist for key: " + *key);
    }
    throw ModelContextError("Invalid keypath store: " + *store);
}

void ModelContext::failConversion(const Found& found, const std::string& type) {
    throw ModelContextError((found.inEnvironment ? "Env unable to convert value " : "unable to convert value ") +
                            found.value->description() + " to " + type);
}

}  // namespace tavrin
