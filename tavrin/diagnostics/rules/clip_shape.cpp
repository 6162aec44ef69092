// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/dsl/structure.h"
#include "tavrin/modifiers/appearance_modifiers.h"
#include "tavrin/nodes/shape_nodes.h"

namespace tavrin {
namespace {

bool isGiven(const JSONOutline& outline, const WrittenMember* member) {
    return member && outline.kind(member->value) != 'n';
}

/// Why a node cannot be a clip's outline; empty where it can.
std::string faultOf(const JSONOutline& outline, const WrittenRecord& node) {
    if (!isA<CircleNode, CapsuleNode, RoundedRectangleNode>(node))
        return "a " + std::string(node.type->name) +
               " is no shape to clip to; a circle, a capsule or a roundedRectangle is";
    if (isFilledList(outline,
                     memberOf<&CircleNode::modifiers, &CapsuleNode::modifiers, &RoundedRectangleNode::modifiers>(node)))
        return "a clip's shape must have no modifiers";
    const WrittenMember* const stroke =
        memberOf<&CircleNode::stroke, &CapsuleNode::stroke, &RoundedRectangleNode::stroke>(node);
    if (isTrue(outline, stroke)) return "a clip's shape must not be stroked";
    const bool mayBeStroked = stroke && outline.isString(stroke->value);  // then the fill does not count
    if (isGiven(outline,
                memberOf<&CircleNode::fillColor, &CapsuleNode::fillColor, &RoundedRectangleNode::fillColor>(node)) &&
        !mayBeStroked)
        return "a clip's shape must not be filled";
    return {};
}

/// The node that is drawn for a node: of a reference the one it names. Null where there is none.
const WrittenRecord* drawn(const WrittenDocument& document, const WrittenRecord* node) {
    constexpr int deepest = 64;
    for (int depth = 0; node && isA<RefNode>(*node); ++depth) {
        const WrittenMember* const name = memberOf<&RefNode::name>(*node);
        if (!name || !document.outline().isString(name->value) || depth > deepest) return nullptr;
        const auto entry = document.entries().find(document.outline().string(name->value));
        node = entry == document.entries().end() ? nullptr : document.recordAt(entry->second);
    }
    return node;
}

}  // namespace

void findRefusedClipShapes(const WrittenSubject& subject, Findings& findings) {
    for (const WrittenRecord& record : subject.document.records()) {
        const WrittenMember* const view = memberOf<&ClipShapeModifier::view>(record);
        const WrittenRecord* const node =
            view ? drawn(subject.document, subject.document.recordAt(view->value)) : nullptr;
        if (!node) continue;
        const std::string fault = faultOf(subject.outline, *node);
        if (!fault.empty()) findings.add(Rule::clipShape, subject.outline, view->value, fault);
    }
}

}  // namespace tavrin
