// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/values/expression_path.h"

namespace tavrin {
namespace {

constexpr std::string_view stores[] = {"initServerParam", "initEnvironment"};

struct Fault {
    std::string message;
    /// The expression as it was probably meant; empty where that is not known.
    std::string meant = {};
};

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t\n\r");
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\n\r") - begin + 1);
}

std::string inBraces(std::string_view inner) { return "{{" + std::string(inner) + "}}"; }

/// An index that follows another one, or stands for a key, is no index.
std::optional<Fault> bracketFault(std::string_view inner) {
    for (; !inner.empty(); inner.remove_prefix(std::min(inner.find('.'), inner.size() - 1) + 1)) {
        const std::string_view component = inner.substr(0, inner.find('.'));
        const std::size_t open = component.find('[');
        const std::size_t close = component.find(']');
        if (open == std::string_view::npos && close == std::string_view::npos) continue;
        if (open == std::string_view::npos || close == std::string_view::npos || close < open)
            return Fault{"the brackets of " + inQuotes(component) + " do not match"};
        const std::string_view index = component.substr(open + 1, close - open - 1);
        if (!fromText<std::int64_t>(index))
            return Fault{"[" + std::string(index) + "] is no index, so " + inQuotes(component) +
                         " is looked up as a key"};
        if (close + 1 < component.size())
            return Fault{
                "what follows the first index of " + inQuotes(component) + " is ignored",
            };
    }
    return std::nullopt;
}

std::optional<Fault> faultOf(std::string_view expression) {
    const std::string_view inner = expression.substr(2, expression.size() - 4);
    if (inner.find("{{") != std::string_view::npos || inner.find("}}") != std::string_view::npos)
        return Fault{"an expression holds one path; this one holds other braces"};
    if (auto fault = bracketFault(inner)) return fault;
    ExpressionWalk walk(inner);
    const std::string store(walk.next() ? walk.key() : std::string_view());
    const std::string_view path = trimmed(inner);
    const bool isKnown = store == stores[0] || store == stores[1];
    if (isKnown && path != inner) return Fault{"blanks count in expressions, also at the end of a key", inBraces(path)};
    if (isKnown && walk.next()) return std::nullopt;
    if (isKnown) return Fault{"the expression names no value of " + store};
    if (path != inner && isWellFormed(inBraces(path)))
        return Fault{"blanks count in expressions; this one must be written " + inBraces(path), inBraces(path)};
    Fault fault{"there is no " + inQuotes(store) + " to look anything up in, only \"initServerParam\"" +
                suggestionFor(store, stores)};
    const auto meant = onlyCloseMatch(store, stores);
    if (meant && inner.starts_with(store)) {
        const std::string repaired = inBraces(std::string(*meant) + std::string(inner.substr(store.size())));
        if (isWellFormed(repaired)) fault.meant = repaired;
    }
    return fault;
}

}  // namespace

void findMalformedExpressions(const WrittenSubject& subject, Findings& findings) {
    const JSONOutline& outline = subject.document.outline();
    forEachProperty(subject.document, [&](const WrittenRecord&, const WrittenMember& member) {
        const auto expression = expressionIn(subject.document, member);
        if (!expression || findings.isFull()) return;
        const auto fault = faultOf(*expression);
        if (!fault) return;
        Diagnostic& found = findings.add(Rule::malformedExpression, outline, member.value, fault->message);
        if (!fault->meant.empty()) found.fix = {replaceByString(outline, member.value, fault->meant)};
    });
}

}  // namespace tavrin
