// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/modifiers/effect_modifiers.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/foundation/time/time_zone_names.h"

namespace tavrin {
namespace {

constexpr std::string_view truths[] = {"true", "false"};

/// Whether a property is a time zone, which counts as left out where it is not known.
bool isTimeZone(const LanguageField& field) { return field.key == keyOf<&ClockHandRotationEffectModifier::timeZone>; }

/// The words that a text for a property may be; empty where it takes any.
std::span<const std::string_view> wordsOf(const LanguageField& field) {
    if (isTimeZone(field)) return timeZoneNames();
    return field.kind == ValueKind::boolean ? std::span<const std::string_view>(truths) : field.words;
}

/// Whether a property's type can be built from a text.
bool isReadable(const LanguageField& field, std::string_view text) {
    switch (field.kind) {
        case ValueKind::number: return fromText<float>(text).has_value();
        case ValueKind::integer: return fromText<std::int64_t>(text).has_value();
        case ValueKind::boolean:
        case ValueKind::keyword: {
            const auto words = wordsOf(field);
            return std::ranges::find(words, text) != words.end();
        }
        case ValueKind::text: return !isTimeZone(field) || timeZoneNames().empty() || TimeZone::named(text).has_value();
        default: return true;
    }
}

/// A scalar's ordinary text; none for what is no scalar, and for null, which is left out on purpose.
std::optional<std::string> scalarText(const JSONOutline& outline, JSONOutline::Index value) {
    switch (outline.kind(value)) {
        case '"': return outline.string(value);
        case '{':
        case '[':
        case 'n': return std::nullopt;
        default: break;
    }
    const std::string raw(outline.raw(value));
    const auto number = doubleFromText(raw);
    const auto whole = number ? exactInteger(*number) : std::nullopt;
    return whole ? toText(*whole) : raw;
}

std::string expected(const LanguageField& field) {
    if (field.kind == ValueKind::number) return "no number";
    if (field.kind == ValueKind::integer) return "no whole number";
    if (isTimeZone(field)) return "no time zone that is known";
    std::string list;
    for (const std::string_view word : wordsOf(field))
        list.append(list.empty() ? "none of " : ", ").append(inQuotes(word));
    return list;
}

std::string hintFor(const LanguageField& field, std::string_view text) {
    const bool isNumber = field.kind == ValueKind::number || field.kind == ValueKind::integer;
    return isNumber ? numberSuggestion(text, field) : keywordSuggestion(text, wordsOf(field));
}

/// `what` is how the value is written, or where else it comes from.
Diagnostic& reportDropped(const WrittenSubject& subject, const WrittenMember& member, const std::string& what,
                          std::string_view text, Findings& findings) {
    const LanguageField& field = *member.field;
    return findings.add(Rule::droppedValue, subject.outline, member.value,
                        what + " is " + expected(field) + ", so \"" + std::string(field.key) + "\" counts as left out" +
                            hintFor(field, text));
}

}  // namespace

void findDroppedValues(const WrittenSubject& subject, Findings& findings) {
    forEachProperty(subject.document, [&](const WrittenRecord&, const WrittenMember& member) {
        const LanguageField& field = *member.field;
        if (!field.isLossless || field.isRequired || findings.isFull()) return;
        if (const auto expression = expressionIn(subject.document, member)) {
            const auto text = textBehind(subject, *expression);
            if (text && *text != "null" && !isReadable(field, *text))
                reportDropped(subject, member, "the model gives " + inQuotes(text->substr(0, 80)) + ", which", *text,
                              findings);
        } else if (const auto text = scalarText(subject.outline, member.value); text && !isReadable(field, *text)) {
            const std::string what(subject.outline.raw(member.value).substr(0, 80));
            Diagnostic& found = reportDropped(subject, member, what, *text, findings);
            const auto meant = meantKeyword(*text, wordsOf(field));
            if (meant && subject.outline.isString(member.value))
                found.fix = {replaceByString(subject.outline, member.value, *meant)};
        }
    });
}

}  // namespace tavrin
