// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/structure.h"

namespace tavrin {

void findReferenceModifiers(const WrittenSubject& subject, Findings& findings) {
    for (const WrittenRecord& record : subject.document.records()) {
        const WrittenMember* const modifiers = memberOf<&RefNode::modifiers>(record);
        if (!isFilledList(subject.outline, modifiers)) continue;
        const WrittenMember* const name = memberOf<&RefNode::name>(record);
        const std::string entry =
            name && subject.outline.isString(name->value) ? " " + inQuotes(subject.outline.string(name->value)) : "";
        findings.addAtKey(Rule::referenceModifiers, subject.outline, modifiers->value,
                          "a reference's own modifiers are not applied; they belong to the node" + entry +
                              ", or around the reference in a stack");
    }
}

}  // namespace tavrin
