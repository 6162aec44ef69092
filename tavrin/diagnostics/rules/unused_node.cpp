// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"

namespace tavrin {

void findUnusedNodes(const WrittenSubject& subject, Findings& findings) {
    if (!subject.document.entries().contains("main")) return;
    for (const auto& [name, entry] : subject.document.entries())
        if (!subject.document.isDrawn(entry))
            findings.addAtKey(Rule::unusedNode, subject.outline, entry,
                              "the node " + inQuotes(name) + " is never drawn");
}

}  // namespace tavrin
