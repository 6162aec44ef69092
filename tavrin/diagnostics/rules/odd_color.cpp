// SPDX-License-Identifier: MIT
#include <cmath>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/modifiers/appearance_modifiers.h"
#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

constexpr std::size_t rgbDigits = 6;
constexpr std::size_t alphaDigits = 2;

struct Oddness {
    Rule rule;
    std::string message;
    /// The colour as it was probably meant; empty where that is not known.
    std::string meant = {};
};

bool areDigits(std::string_view text, std::string_view digits) {
    return text.find_first_not_of(digits) == std::string_view::npos;
}

/// `CC112233`, whose alpha CC is 80 per cent, as `80112233`; an opaque colour without alpha.
std::string inPercent(std::string_view digits) {
    const int alpha = std::stoi(std::string(digits.substr(0, alphaDigits)), nullptr, 16);
    const long percent = std::lround(alpha / 255.0 * 100);
    std::string rgb(digits.substr(alphaDigits));
    if (percent >= 100) return rgb;
    return (percent < 10 ? "0" : "") + toText(static_cast<std::int64_t>(percent)) + rgb;
}

/// What is odd about a colour string as documents write it.
std::optional<Oddness> oddnessOf(std::string_view color) {
    constexpr std::string_view decimal = "0123456789";
    constexpr std::string_view hexadecimal = "0123456789abcdefABCDEF";
    constexpr std::string_view blanks = " \t\n\v\f\r";
    const std::size_t begin = std::min(color.find_first_not_of(blanks), color.size());
    std::string_view digits = color.substr(begin, color.find_last_not_of(blanks) - begin + 1);
    const std::string sign = digits.starts_with('#') ? "#" : "";
    digits.remove_prefix(sign.size());
    if (!colorFromHexString(color)) {
        const std::string meant = longColor(digits);
        const std::string hint = meant.empty() ? "" : "; did you mean " + inQuotes(meant) + "?";
        return Oddness{Rule::oddColor, inQuotes(color) + " is no colour" + hint, meant};
    }
    if (digits.size() == rgbDigits) return std::nullopt;
    if (digits.size() == rgbDigits + alphaDigits && areDigits(digits.substr(0, alphaDigits), decimal))
        return std::nullopt;
    if (digits.size() == rgbDigits + alphaDigits && areDigits(digits, hexadecimal)) {
        const std::string meant = sign + inPercent(digits);
        return Oddness{Rule::hexAlpha,
                       "the opacity of " + inQuotes(color) +
                           " is no number of per cent, so the colour is opaque; its alpha is written " +
                           inQuotes(meant),
                       meant};
    }
    return Oddness{Rule::oddColor, inQuotes(color) +
                                       " is read in part: a colour has six digits, or eight of which the "
                                       "first two are its opacity in per cent"};
}

class ColorRule {
public:
    ColorRule(const WrittenSubject& subject, Findings& findings)
        : subject_(subject), outline_(subject.outline), findings_(findings) {
        if (subject.model) modelPaths_.emplace(subject.model->outline());
    }

    /// Judges a property that holds a colour. One that cannot be read fails the document where it `mustBeReadable`.
    void judge(const WrittenMember& member, bool isList, bool isConverted, bool mustBeReadable) {
        if (const auto expression = expressionIn(subject_.document, member)) {
            judgeBound(*expression, isList, isConverted);
        } else if (outline_.isString(member.value)) {
            judgeText(outline_, member.value, outline_.string(member.value), isList, mustBeReadable,
                      TextRole::document);
        }
    }

private:
    void judgeBound(const std::string& expression, bool isList, bool isConverted) {
        const auto text = textBehind(subject_, expression);
        const auto place = text ? modelPaths_->find(pathInModel(expression)) : std::nullopt;
        if (!place || !subject_.model->outline().isString(*place)) return;
        const JSONOutline& model = subject_.model->outline();
        const std::string converted(convertARGB(*text));
        const bool isARGB = isConverted && converted != *text;
        if (!isARGB) return judgeText(model, *place, *text, isList, true, TextRole::model);
        if (converted.size() == text->size()) return;
        const std::string meant = text->substr(0, 1) + text->substr(3);
        findings_
            .add(Rule::modelAlphaFF, model, *place,
                 "the alpha FF of " + inQuotes(*text) +
                     " becomes three digits, which shifts the colour's own; an opaque "
                     "colour is written " +
                     inQuotes(meant),
                 TextRole::model)
            .fix = {replaceByString(model, *place, meant)};
    }

    void judgeText(const JSONOutline& outline, JSONOutline::Index value, const std::string& text, bool isList,
                   bool mustBeReadable, TextRole role) {
        std::string whole;
        std::optional<Oddness> first;
        for (std::string_view rest = text; !rest.empty() || whole.empty();) {
            const std::string_view part = isList ? rest.substr(0, rest.find('-')) : rest;
            const std::optional<Oddness> oddness = oddnessOf(part);
            if (oddness && !first) first = oddness;
            whole.append(whole.empty() ? "" : "-").append(oddness && !oddness->meant.empty() ? oddness->meant : part);
            if (part.size() >= rest.size()) break;
            rest.remove_prefix(part.size() + 1);
        }
        // Loading refuses it, and says so.
        if (!first || (mustBeReadable && !isList && !colorFromHexString(text))) return;
        Diagnostic& found = findings_.add(first->rule, outline, value, first->message, role);
        if (whole != text) found.fix = {replaceByString(outline, value, whole)};
    }

    const WrittenSubject& subject_;
    const JSONOutline& outline_;
    std::optional<OutlinePaths> modelPaths_;
    Findings& findings_;
};

}  // namespace

void findOddColors(const WrittenSubject& subject, Findings& findings) {
    ColorRule rule(subject, findings);
    for (const WrittenRecord& record : subject.document.records()) {
        const bool isGradient = isTrue(subject.outline, memberOf<&ColorNode::gradient>(record));
        if (const auto* value = memberOf<&ColorNode::value>(record)) rule.judge(*value, isGradient, true, true);
        if (const auto* dark = memberOf<&ColorNode::dark>(record); dark && !isGradient)
            rule.judge(*dark, false, false, false);
        if (const auto* color = memberOf<&BorderModifier::color>(record)) rule.judge(*color, false, false, false);
    }
}

}  // namespace tavrin
