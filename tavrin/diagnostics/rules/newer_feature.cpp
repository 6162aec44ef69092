// SPDX-License-Identifier: MIT
#include <algorithm>

#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/dsl_root.h"

namespace tavrin {

void findNewerFeatures(const WrittenSubject& subject, Findings& findings) {
    const WrittenDocument& document = subject.document;
    const JSONOutline& outline = document.outline();
    const WrittenRecord* const root = document.root();
    const WrittenMember* const version = root ? memberOf<&DSLRoot::version>(*root) : nullptr;
    if (!version || !outline.isString(version->value)) return;
    const std::string declared = outline.string(version->value);
    const std::span<const std::string_view> known = version->field->words;
    if (std::ranges::find(known, declared) == known.end()) return;  // loading refuses it
    std::string needed = declared;
    for (const WrittenRecord& record : document.records()) needed = std::max(needed, std::string(record.type->version));
    if (needed == declared) return;
    const std::vector<TextEdit> raise{replaceByString(outline, version->value, needed)};
    for (const WrittenRecord& record : document.records()) {
        if (!record.tag || record.type->version <= declared) continue;
        findings
            .add(Rule::newerFeature, outline, *record.tag,
                 inQuotes(record.type->name) + " came with version " + std::string(record.type->version) +
                     ", but the document says " + inQuotes(declared))
            .fix = raise;
    }
}

}  // namespace tavrin
