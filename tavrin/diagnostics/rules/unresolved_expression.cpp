// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/values/expression_path.h"

namespace tavrin {
namespace {

/// Whether what an expression leads to can be had as a property's type. Throws `ModelContextError` where not.
void resolve(const ModelContext& context, const LanguageField& field, const std::string& expression) {
    if (!field.isRequired || field.kind == ValueKind::text)
        return static_cast<void>(context.resolve<SharedText>(expression));
    if (field.kind == ValueKind::number) return static_cast<void>(context.resolve<float>(expression));
    const SharedText text = context.resolve<SharedText>(expression);
    if (field.kind == ValueKind::keyword && std::ranges::find(field.words, text.view()) == field.words.end())
        throw ModelContextError("unable to convert value " + std::string(text) + " to a keyword" +
                                suggestionFor(text, field.words));
}

/// Where a path leaves the model.
struct Stop {
    std::string hint;
    std::string meant = {};  ///< the key that was probably meant instead of `wrong`
    std::string wrong = {};
};

std::vector<std::string_view> keysOf(const JSON& value) {
    constexpr std::size_t enough = 1000;
    std::vector<std::string_view> keys;
    const auto* const object = std::get_if<JSONObject>(&value.object());
    if (object && object->members().size() <= enough)
        for (const auto& [key, member] : object->members()) keys.push_back(key.view());
    return keys;
}

Stop stopAt(const JSON& value, const JSONKey& step) {
    const auto* const array = std::get_if<JSONArray>(&value.object());
    if (const auto* key = std::get_if<std::string>(&step)) {
        if (array && fromText<std::int64_t>(*key)) return {"; an element of a list is written [" + *key + "]"};
        if (array) return {"; " + inQuotes(*key) + " is looked for in a list"};
        const std::vector<std::string_view> keys = keysOf(value);
        return {suggestionFor(*key, keys), std::string(onlyCloseMatch(*key, keys).value_or("")), *key};
    }
    if (array) return {"; the list has " + toText(static_cast<std::int64_t>(array->size())) + " elements"};
    return {"; there is no list to take an element of"};
}

Stop stopOf(const JSON& model, std::string_view inner) {
    const std::vector<JSONKey> path = expressionPath(inner);
    const JSON* value = &model;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const auto* key = std::get_if<std::string>(&path[i]);
        const JSON* const next = key ? value->find(*key) : value->find(std::get<std::int64_t>(path[i]));
        if (!next) return stopAt(*value, path[i]);
        value = next;
    }
    return {};
}

/// The expression with the one key that is wrong replaced; empty where that does not help.
std::string repaired(const BoundModel& model, const std::string& expression, const Stop& stop) {
    if (stop.meant.empty()) return {};
    const std::size_t at = expression.rfind("." + stop.wrong);
    if (at == std::string::npos) return {};
    std::string meant = expression;
    meant.replace(at + 1, stop.wrong.size(), stop.meant);
    return isWellFormed(meant) && model.find(meant) ? meant : std::string();
}

}  // namespace

void findUnresolvedExpressions(const WrittenSubject& subject, Findings& findings) {
    if (!subject.model) return;
    forEachProperty(subject.document, [&](const WrittenRecord&, const WrittenMember& member) {
        const auto expression = expressionIn(subject.document, member);
        if (!expression || !isWellFormed(*expression) || findings.isFull()) return;
        try {
            resolve(subject.model->context(), *member.field, *expression);
        } catch (const ModelContextError& error) {
            const Stop stop = stopOf(subject.model->context().model, innerOf(*expression));
            Diagnostic& found =
                findings.add(Rule::unresolvedExpression, subject.outline, member.value, error.message + stop.hint);
            const std::string meant = repaired(*subject.model, *expression, stop);
            if (!meant.empty()) found.fix = {replaceByString(subject.outline, member.value, meant)};
        }
    });
}

}  // namespace tavrin
