// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"

namespace tavrin {

void findEmbeddedExpressions(const WrittenSubject& subject, Findings& findings) {
    forEachProperty(subject.document, [&](const WrittenRecord&, const WrittenMember& member) {
        if (!member.field->isLossless || !subject.outline.isString(member.value)) return;
        if (subject.outline.raw(member.value).find("{{") == std::string_view::npos) return;
        const std::string text = subject.outline.string(member.value);
        const std::size_t open = text.find("{{");
        const std::size_t close = text.rfind("}}");
        if (isExpression(text) || open == std::string::npos || close == std::string::npos || close < open + 2) return;
        Diagnostic& found =
            findings.add(Rule::embeddedExpression, subject.outline, member.value,
                         "an expression is looked up only where it stands alone; here it is shown as it stands");
        const std::string alone = text.substr(open, close + 2 - open);
        const bool isAllElseBlank =
            text.find_first_not_of(" \t\n\r") == open && text.find_last_not_of(" \t\n\r") == close + 1;
        if (isAllElseBlank && isWellFormed(alone)) found.fix = {replaceByString(subject.outline, member.value, alone)};
    });
}

}  // namespace tavrin
