// SPDX-License-Identifier: MIT
#include <cmath>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/nodes/text_nodes.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/time/rfc3339.h"
#include "tavrin/schema/note_text.h"
#include "tavrin/values/value_conversion.h"

namespace tavrin {

void findRoundedMoments(const WrittenSubject& subject, Findings& findings) {
    forEachProperty(subject.document, [&](const WrittenRecord& record, const WrittenMember& member) {
        if (!isProperty<&TimerNode::timestamp>(record, member) || findings.isFull()) return;
        const auto text = scalarTextOf(subject, member);
        const auto meant = text ? doubleFromText(*text) : std::nullopt;
        const auto read = text ? fromText<float>(*text) : std::nullopt;
        if (!meant || !read) return;
        constexpr double aSecond = 1;
        const double seconds = *read;
        const auto moment = rfc3339Text(Date{seconds});
        if (!moment || !(std::abs(seconds - *meant) >= aSecond)) return;
        findings.add(
            Rule::roundedMoment, subject.outline, member.value,
            "the timer's moment " + text->substr(0, 80) + " is rounded to " + numberText(seconds) + ", " + *moment);
    });
}

}  // namespace tavrin
