// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/dsl_root.h"

namespace tavrin {

void findDuplicateKeys(const WrittenSubject& subject, Findings& findings) {
    for (const WrittenRecord& record : subject.document.records())
        for (const WrittenMember& member : record.others())
            if (member.isRepeated)
                findings.addAtKey(Rule::duplicateKey, subject.outline, member.value,
                                  "the key " + inQuotes(subject.outline.key(member.value)) +
                                      " stands here a second time; only the first counts");
    const WrittenRecord* const root = subject.document.root();
    const WrittenMember* const nodes = root ? memberOf<&DSLRoot::nodes>(*root) : nullptr;
    if (!nodes || !subject.outline.isObject(nodes->value)) return;
    subject.outline.forEachChild(nodes->value, [&](JSONOutline::Index entry) {
        const std::string name = subject.outline.key(entry);
        if (subject.document.entries().find(name)->second != entry)
            findings.addAtKey(Rule::duplicateKey, subject.outline, entry,
                              "a node named " + inQuotes(name) + " stands here a second time; only the first counts");
    });
}

}  // namespace tavrin
