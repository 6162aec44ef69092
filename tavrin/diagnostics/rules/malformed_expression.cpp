// SPDX-License-Identifier: MIT
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

/// What is wrong with a component's brackets, in words.
std::string describe(const ExpressionFault& fault) {
    const std::string component = inQuotes(fault.component);
    switch (fault.kind) {
        case ExpressionFault::Kind::noIndex:
            return "[" + std::string(fault.index) + "] is no index, so " + component + " is looked up as a key";
        case ExpressionFault::Kind::ignoredText: return "what follows the first index of " + component + " is ignored";
        default: return "the brackets of " + component + " do not match";
    }
}

std::optional<Fault> faultOf(std::string_view expression) {
    const std::string_view inner = innerOf(expression);
    if (inner.find("{{") != std::string_view::npos || inner.find("}}") != std::string_view::npos)
        return Fault{"an expression holds one path; this one holds other braces"};
    if (const auto fault = findBracketFault(inner)) return Fault{describe(*fault)};
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
    forEachProperty(subject.document, [&](const WrittenRecord&, const WrittenMember& member) {
        const auto expression = expressionIn(subject.document, member);
        if (!expression || findings.isFull()) return;
        const auto fault = faultOf(*expression);
        if (!fault) return;
        Diagnostic& found = findings.add(Rule::malformedExpression, subject.outline, member.value, fault->message);
        if (!fault->meant.empty()) found.fix = {replaceByString(subject.outline, member.value, fault->meant)};
    });
}

}  // namespace tavrin
