// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"

namespace tavrin {
namespace {

bool isList(const JSONOutline& outline, const WrittenMember* member) {
    return member && outline.isArray(member->value) && outline[member->value].last > member->value + 1;
}

bool isGiven(const JSONOutline& outline, const WrittenMember* member) {
    return member && outline.kind(member->value) != 'n';
}

/// Why a node cannot be a clip's outline; empty where it can.
std::string faultOf(const JSONOutline& outline, const WrittenRecord& node) {
    const std::string_view type = node.type->name;
    if (type != "circle" && type != "capsule" && type != "roundedRectangle")
        return "a " + std::string(type) + " is no shape to clip to; a circle, a capsule or a roundedRectangle is";
    if (isList(outline, memberOf(node, "modifiers"))) return "a clip's shape must have no modifiers";
    const WrittenMember* const stroke = memberOf(node, "stroke");
    if (stroke && (outline.raw(stroke->value) == "true" || outline.raw(stroke->value) == "\"true\""))
        return "a clip's shape must not be stroked";
    const bool mayBeStroked = stroke && outline.isString(stroke->value);  // then the fill does not count
    if (isGiven(outline, memberOf(node, "fillColor")) && !mayBeStroked) return "a clip's shape must not be filled";
    return {};
}

/// The node that is drawn for a node: of a reference the one it names. Null where there is none.
const WrittenRecord* drawn(const WrittenDocument& document, const WrittenRecord* node) {
    constexpr int deepest = 64;
    for (int depth = 0; node && node->type->name == "node"; ++depth) {
        const WrittenMember* const name = memberOf(*node, "name");
        if (!name || !document.outline().isString(name->value) || depth > deepest) return nullptr;
        const auto entry = document.entries().find(document.outline().string(name->value));
        node = entry == document.entries().end() ? nullptr : document.recordAt(entry->second);
    }
    return node;
}

}  // namespace

void findRefusedClipShapes(const WrittenSubject& subject, Findings& findings) {
    const JSONOutline& outline = subject.document.outline();
    for (const WrittenRecord& record : subject.document.records()) {
        const WrittenMember* const view = record.type->name == "clipShape" ? memberOf(record, "view") : nullptr;
        const WrittenRecord* const node =
            view ? drawn(subject.document, subject.document.recordAt(view->value)) : nullptr;
        if (!node) continue;
        const std::string fault = faultOf(outline, *node);
        if (!fault.empty()) findings.add(Rule::clipShape, outline, view->value, fault);
    }
}

}  // namespace tavrin
