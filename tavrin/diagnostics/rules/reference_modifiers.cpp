// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/structure.h"

namespace tavrin {

void findReferenceModifiers(const WrittenSubject& subject, Findings& findings) {
    const JSONOutline& outline = subject.document.outline();
    for (const WrittenRecord& record : subject.document.records()) {
        const WrittenMember* const modifiers = memberOf<&RefNode::modifiers>(record);
        if (!modifiers || !outline.isArray(modifiers->value) || outline[modifiers->value].last == modifiers->value + 1)
            continue;
        const WrittenMember* const name = memberOf<&RefNode::name>(record);
        const std::string entry =
            name && outline.isString(name->value) ? " " + inQuotes(outline.string(name->value)) : "";
        findings.addAtKey(Rule::referenceModifiers, outline, modifiers->value,
                          "a reference's own modifiers are not applied; they belong to the node" + entry +
                              ", or around the reference in a stack");
    }
}

}  // namespace tavrin
