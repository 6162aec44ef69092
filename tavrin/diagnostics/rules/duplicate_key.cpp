// SPDX-License-Identifier: MIT

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/dsl_root.h"

namespace tavrin {

void findDuplicateKeys(const WrittenSubject& subject, Findings& findings) {
    const JSONOutline& outline = subject.document.outline();
    for (const WrittenRecord& record : subject.document.records())
        for (const WrittenMember& member : record.others())
            if (member.isRepeated)
                findings.addAtKey(Rule::duplicateKey, outline, member.value,
                                  "the key " + inQuotes(outline.key(member.value)) +
                                      " stands here a second time; only the first counts");
    if (subject.document.records().empty()) return;
    const WrittenMember* const nodes = memberOf<&DSLRoot::nodes>(subject.document.records().front());
    if (!nodes || !outline.isObject(nodes->value)) return;
    outline.forEachChild(nodes->value, [&](JSONOutline::Index entry) {
        const std::string name = outline.key(entry);
        if (subject.document.entries().find(name)->second != entry)
            findings.addAtKey(Rule::duplicateKey, outline, entry,
                              "a node named " + inQuotes(name) + " stands here a second time; only the first counts");
    });
}

}  // namespace tavrin
