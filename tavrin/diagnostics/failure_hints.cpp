// SPDX-License-Identifier: MIT
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tavrin/diagnostics/load_failure.h"
#include "tavrin/diagnostics/suggestions.h"
#include "tavrin/dsl/dsl_root.h"
#include "tavrin/dsl/structure.h"
#include "tavrin/nodes/color_node.h"
#include "tavrin/values/value_conversion.h"

namespace tavrin {
namespace {

using Index = JSONOutline::Index;

class Hints {
public:
    Hints(const WrittenDocument& document, Diagnostic& error)
        : document_(document), outline_(document.outline()), error_(error) {}

    void addFor(Rule rule) {
        const Index place = OutlinePaths(outline_).nearest(error_.path);
        switch (rule) {
            case Rule::unknownWord: return addForWord(place);
            case Rule::unreadableValue: return addForValue(place);
            case Rule::refused: return addForRefusal(place);
            default: return;
        }
    }

private:
    void addForWord(Index place) {
        const auto wrong = std::ranges::find(document_.wrongWords(), place, &WrongWord::value);
        if (wrong != document_.wrongWords().end()) suggestKeyword(place, wrong->words);
    }

    /// A literal that cannot be read as what its key takes.
    void addForValue(Index place) {
        const WrittenRecord* const record = document_.recordAt(outline_[place].parent);
        const WrittenMember* const member = record ? memberOf(*record, outline_.key(place)) : nullptr;
        if (!member || member->value != place || !outline_.isString(place)) return;
        const LanguageField& field = *member->field;
        if (field.kind == ValueKind::keyword) return suggestKeyword(place, field.words);
        if (field.kind == ValueKind::number || field.kind == ValueKind::integer)
            hint(numberSuggestion(outline_.string(place), field));
    }

    void addForRefusal(Index place) {
        if (error_.path.empty() && !document_.entries().contains("main")) return addForMain();
        const WrittenRecord* const record = document_.recordAt(place);
        if (!record) return;
        if (isA<RefNode>(*record)) addForReference(*record);
        if (isA<ColorNode>(*record)) addForColor(*record);
    }

    void addForMain() {
        const WrittenMember* const nodes = document_.root() ? memberOf<&DSLRoot::nodes>(*document_.root()) : nullptr;
        if (!nodes) return;
        moveTo(nodes->value);
        const std::vector<std::string_view> names = entryNames();
        const auto meant = onlyCloseMatch("main", names);
        if (!meant) return;
        const Index entry = document_.entries().find(*meant)->second;
        moveTo(entry);
        error_.range = keyRangeOf(outline_, entry);
        error_.fix = {{*error_.range, inQuotes("main")}};
        hint("; should " + inQuotes(*meant) + " be \"main\"?");
    }

    void addForReference(const WrittenRecord& reference) {
        const WrittenMember* const name = literal(memberOf<&RefNode::name>(reference));
        if (!name) return;
        const std::string wrong = outline_.string(name->value);
        if (document_.entries().contains(wrong)) return;  // something else is wrong
        moveTo(name->value);
        const std::vector<std::string_view> names = entryNames(document_.entriesThatDraw(reference.entry));
        hint(suggestionFor(wrong, names));
        if (const auto meant = onlyCloseMatch(wrong, names)) fixBy(name->value, *meant);
    }

    void addForColor(const WrittenRecord& color) {
        const WrittenMember* const value = memberOf<&ColorNode::value>(color);
        if (!value || !outline_.isString(value->value)) return;
        const std::string wrong = outline_.string(value->value);
        if (error_.message != "ColorNode: invalid color: " + wrong) return;
        moveTo(value->value);
        if (isExpression(wrong)) return hint("; without a model there is no colour");
        const std::string meant = longColor(wrong);
        if (meant.empty()) return;
        hint("; did you mean " + inQuotes(meant) + "?");
        fixBy(value->value, meant);
    }

    void suggestKeyword(Index place, std::span<const std::string_view> words) {
        const std::string wrong = outline_.string(place);
        const std::string suggestion = keywordSuggestion(wrong, words);
        const bool isThere = error_.message.ends_with('?') || (suggestion.empty() && isListed(words));
        if (!isThere) hint(suggestion.empty() ? "; there are " + listed(words) : suggestion);
        if (const auto meant = meantKeyword(wrong, words)) fixBy(place, *meant);
    }

    /// Whether the message names all words itself.
    [[nodiscard]] bool isListed(std::span<const std::string_view> words) const {
        return !words.empty() && error_.message.ends_with(inQuotes(words.back()));
    }
    static std::string listed(std::span<const std::string_view> words) {
        std::string list;
        for (const std::string_view word : words) list.append(list.empty() ? "" : ", ").append(inQuotes(word));
        return list;
    }

    /// The member where it holds a text that is no expression, else null.
    [[nodiscard]] const WrittenMember* literal(const WrittenMember* member) const {
        const bool isLiteral =
            member && outline_.isString(member->value) && !isExpression(outline_.string(member->value));
        return isLiteral ? member : nullptr;
    }
    /// The names of the document's nodes but for some; none where there are too many to compare.
    [[nodiscard]] std::vector<std::string_view> entryNames(const std::set<Index>& without = {}) const {
        constexpr std::size_t enough = 1000;
        std::vector<std::string_view> names;
        if (document_.entries().size() > enough) return names;
        for (const auto& [name, entry] : document_.entries())
            if (!without.contains(entry)) names.emplace_back(name);
        return names;
    }

    void hint(const std::string& words) { error_.message += words; }
    void fixBy(Index place, std::string_view text) { error_.fix = {replaceByString(outline_, place, text)}; }
    void moveTo(Index place) {
        error_.path = outline_.path(place);
        error_.range = rangeOf(outline_, place);
    }

    const WrittenDocument& document_;
    const JSONOutline& outline_;
    Diagnostic& error_;
};

}  // namespace

void addHints(Rule rule, const WrittenDocument& document, Diagnostic& error) {
    if (!document.outline().values().empty()) Hints(document, error).addFor(rule);
}

}  // namespace tavrin
