// SPDX-License-Identifier: MIT
#include "tavrin/values/model_context.h"

#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/values/expression_path.h"

namespace tavrin {
namespace {

std::string debugDescription(std::string_view key) {
    constexpr std::string_view letters = "\"\\nrt0";
    constexpr std::string_view meanings("\"\\\n\r\t\0", letters.size());
    std::string text = "\"";
    for (const char c : key) {
        const std::size_t letter = meanings.find(c);
        if (letter < letters.size()) text += '\\';
        text += letter < letters.size() ? letters[letter] : c;
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

/// Goes to the next step of a path; reversed brackets are a violated precondition.
bool goOn(ExpressionWalk& walk) {
    if (walk.next()) return true;
    if (walk.fault())
        preconditionFailure("']' before '[' in the expression component " + std::string(walk.fault()->component));
    return false;
}

/// A violated precondition comes before any error, also behind the step that fails.
void checkRest(ExpressionWalk walk) {
    while (goOn(walk)) {
    }
}

[[noreturn]] void failPath(std::string_view message, std::string_view inner, std::size_t skipped) {
    checkRest(ExpressionWalk(inner));
    const std::vector<JSONKey> path = expressionPath(inner);
    throw ModelContextError(std::string(message) + describe(std::span(path).subspan(skipped)));
}

const JSON* memberOf(const JSON& value, const ExpressionWalk& step) {
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
    const std::string_view inner = innerOf(expression);
    ExpressionWalk walk(inner);
    const std::string_view store = goOn(walk) ? walk.key() : std::string_view();
    if (!goOn(walk)) failPath("KeyPath Invalid: ", inner, 0);
    if (store == "initServerParam") {
        const JSON* value = &model;
        do {
            value = memberOf(*value, walk);
            if (value == nullptr) failPath("key path not found in model: ", inner, 1);
        } while (goOn(walk));
        return {.inModel = value};
    }
    checkRest(walk);
    if (store == "initEnvironment") {
        if (walk.isIndex())
            throw ModelContextError("Environment Variable Key must be stirng, got " + toText(walk.index()));
        if (const auto entry = environment.find(walk.key()); entry != environment.end())
            return {.inEnvironment = &entry->second};
        throw ModelContextError("Environment Variable not exist for key: " + std::string(walk.key()));
    }
    throw ModelContextError("Invalid keypath store: " + std::string(store));
}

void ModelContext::failConversion(const Found& found, const std::string& type) {
    throw ModelContextError(found.inEnvironment
                                ? "Env unable to convert value " + found.inEnvironment->description() + " to " + type
                                : "unable to convert value " + found.inModel->description() + " to " + type);
}

}  // namespace tavrin
