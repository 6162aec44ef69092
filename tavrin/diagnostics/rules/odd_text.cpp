// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <span>
#include <variant>

#include <fmt/format.h>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/nodes/text_nodes.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/values/expression_path.h"

namespace tavrin {
namespace {

/// As many digits as no one writes, but a calculation leaves behind.
constexpr std::ptrdiff_t noisyDigits = 15;

std::ptrdiff_t significantDigits(std::string_view number) {
    const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
    const std::size_t first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
    return std::ranges::count_if(mantissa.substr(first), isDigit<char>);
}

/// What is odd about a number as a text shows it; empty where nothing is.
std::string oddnessOfNumber(double number) {
    const std::string shown = toText(number);
    if (shown.find('.') == std::string::npos || significantDigits(shown) < noisyDigits) return {};
    const std::string rounded = toText(doubleFromText(fmt::format("{:.12g}", number)).value_or(number));
    const bool isMeant = significantDigits(rounded) + 2 < noisyDigits - 2;
    return shown + " is shown with all its digits" + (isMeant ? "; did you mean " + rounded + "?" : "");
}

/// The value of the model that an expression leads to; null where it leads nowhere.
const JSON* valueBehind(const WrittenSubject& subject, std::string_view expression) {
    if (!subject.model || !isWellFormed(expression) || !subject.model->find(expression)) return nullptr;
    const std::vector<JSONKey> path = expressionPath(innerOf(expression));
    if (path.front() != JSONKey("initServerParam")) return nullptr;
    return ModelContext::getValueFrom(std::span(path).subspan(1), subject.model->context().model);
}

std::string oddnessBehind(const WrittenSubject& subject, std::string_view expression) {
    const JSON* const value = valueBehind(subject, expression);
    if (!value) return {};
    if (std::holds_alternative<std::nullptr_t>(value->object())) return "null is shown as a word";
    const double* const number = std::get_if<double>(&value->object());
    return number ? oddnessOfNumber(*number) : std::string();
}

std::string oddnessOfLiteral(const WrittenSubject& subject, const WrittenMember& member) {
    if (subject.outline.isString(member.value)) return {};
    const auto number = doubleFromText(subject.outline.raw(member.value));
    return number ? oddnessOfNumber(*number) : std::string();
}

}  // namespace

void findOddTexts(const WrittenSubject& subject, Findings& findings) {
    forEachProperty(subject.document, [&](const WrittenRecord& record, const WrittenMember& member) {
        if (!isProperty<&TextNode::content>(record, member) || findings.isFull()) return;
        const auto expression = expressionIn(subject.document, member);
        const std::string oddness =
            expression ? oddnessBehind(subject, *expression) : oddnessOfLiteral(subject, member);
        if (oddness.empty()) return;
        findings.add(Rule::oddText, subject.outline, member.value, (expression ? "the model's " : "") + oddness);
    });
}

}  // namespace tavrin
