// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/modifiers/effect_modifiers.h"
#include "tavrin/nodes/text_nodes.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/schema/note_text.h"

namespace tavrin {
namespace {

/// What no range says: a number of some property that is read as it is, but surely meant otherwise.
struct Oddity {
    bool (*mayBeIn)(const WrittenRecord& record, const WrittenMember& member);
    bool (*is)(double number);
    std::string_view message;  // what follows from the number
};

/// 1 January 5000, in seconds since 1970; as milliseconds, a day in 1973.
constexpr double year5000 = 95'617'584'000;
bool isNothing(double number) { return number == 0; }
bool isFar(double number) { return number >= year5000 && std::isfinite(number); }

constexpr std::array oddities{
    Oddity{isProperty<&TextNode::fontSize, &TimerNode::fontSize>, isNothing, ", so the text is not drawn"},
    Oddity{isProperty<&ClockHandRotationEffectModifier::period>, isNothing, ", so the hand does not turn"},
    Oddity{isProperty<&TimerNode::timestamp>, isFar, " seconds, after the year 5000; were milliseconds meant?"},
};

/// What a share that is given in per cent was meant to be.
std::string shareHint(const Note& note, double number) {
    constexpr double whole = 100;
    const bool isShare = note.minimum == 0 && note.maximum == 1;
    if (!isShare || number > whole || number != std::floor(number)) return {};
    return number > 1 ? "; did you mean " + toText(number / whole) + "?" : "";
}

/// What is wrong with a number; empty where nothing is. `text` is how it is written.
std::string faultOf(const WrittenRecord& record, const WrittenMember& member, const std::string& text, bool isBound) {
    const std::optional<double> number = doubleFromText(text);
    if (!number || std::isnan(*number)) return {};
    const Note& note = member.field->note;
    const std::string said =
        inQuotes(member.field->key) + " is " + text.substr(0, 80) + (isBound ? " in the model" : "");
    const bool isBelow = note.minimum && *number < *note.minimum;
    const bool isAbove = note.maximum && *number > *note.maximum;
    if (isBelow || isAbove) return said + ", not " + sensibleRange(note) + shareHint(note, *number);
    for (const Oddity& oddity : oddities)
        if (oddity.is(*number) && oddity.mayBeIn(record, member)) return said + std::string(oddity.message);
    return {};
}

}  // namespace

void findNumbersOutOfRange(const WrittenSubject& subject, Findings& findings) {
    forEachProperty(subject.document, [&](const WrittenRecord& record, const WrittenMember& member) {
        const LanguageField& field = *member.field;
        if (field.isList || (field.kind != ValueKind::number && field.kind != ValueKind::integer)) return;
        const auto text = scalarTextOf(subject, member);
        const bool isBound = expressionIn(subject.document, member).has_value();
        const std::string fault = text ? faultOf(record, member, *text, isBound) : std::string();
        if (!fault.empty()) findings.add(Rule::outOfRange, subject.outline, member.value, fault);
    });
}

}  // namespace tavrin
