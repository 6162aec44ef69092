// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/structure.h"

namespace tavrin {
namespace {

/// All nodes have the same one.
constexpr std::string_view modifiersKey = keyOf<&EmptyViewNode::modifiers>;

/// Keys that authors and editors may use for themselves: "$schema", "_todo", "//".
bool isTheAuthorsOwn(std::string_view key) {
    return key.starts_with('$') || key.starts_with('_') || key.starts_with("//");
}

bool isModifier(std::string_view word) {
    const auto& modifiers = documentLanguage().modifiers;
    return std::ranges::any_of(modifiers, [&](const auto& modifier) { return modifier.name == word; });
}

/// The record's keys that are not written yet.
std::vector<std::string_view> freeKeys(const WrittenRecord& record) {
    std::vector<std::string_view> keys;
    for (const auto& field : record.type->fields)
        if (!memberOf(record, field.key)) keys.push_back(field.key);
    return keys;
}

void report(const WrittenDocument& document, const WrittenRecord& record, JSONOutline::Index member,
            const std::string& key, Findings& findings) {
    const JSONOutline& outline = document.outline();
    const std::vector<std::string_view> keys = freeKeys(record);
    const WrittenMember* const list = isModifier(key) ? memberOf(record, modifiersKey) : nullptr;
    const std::string hint =
        list ? "; a modifier stands in the list " + inQuotes(modifiersKey) : suggestionFor(key, keys);
    Diagnostic& found =
        findings.addAtKey(Rule::unknownKey, outline, member,
                          "unknown key " + inQuotes(key) + " in " + std::string(record.type->name) + hint);
    if (const auto meant = onlyCloseMatch(key, keys); meant && !list)
        found.fix = {{keyRangeOf(outline, member), inQuotes(*meant)}};
}

}  // namespace

void findUnknownKeys(const WrittenSubject& subject, Findings& findings) {
    for (const WrittenRecord& record : subject.document.records()) {
        for (const WrittenMember& member : record.others()) {
            if (member.isRepeated || findings.isFull()) continue;
            const std::string key = subject.outline.key(member.value);
            // A colour that a property holds may name its type as a node does.
            if (isTheAuthorsOwn(key) || (key == typeKey && record.object != 0)) continue;
            report(subject.document, record, member.value, key, findings);
        }
    }
}

}  // namespace tavrin
