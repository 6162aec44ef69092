// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_views.h"

#include <algorithm>

#include "tavrin/dsl/type_tags.h"
#include "tavrin/images/web_image.h"
#include "tavrin/platform/ui/primitive_views.h"
#include "tavrin/values/value_conversion.h"

namespace tavrin {
namespace {

bool isEffect(const WrittenRecord& record) {
    constexpr ModifierType effects[] = {ModifierType::offset, ModifierType::scaleEffect, ModifierType::rotationEffect};
    return record.tag &&
           std::ranges::any_of(effects, [&](ModifierType effect) { return record.type->name == rawValue(effect); });
}

/// A view, and what is known of where it stands.
struct WalkedView : DrawnView {
    bool isClipped = false;
};

}  // namespace

BoundEffects boundEffects(const WrittenDocument& document) {
    BoundEffects bound;
    const JSONOutline& outline = document.outline();
    const auto holdsExpression = [&](const WrittenMember& member) {
        return outline.isString(member.value) && isExpression(outline.string(member.value));
    };
    for (const WrittenRecord& record : document.records())
        if (isEffect(record) && std::ranges::any_of(record.members, holdsExpression))
            bound.insert(toText(outline.path(record.object)));
    return bound;
}

pool::Vector<DrawnView> drawnViews(const layout::LayoutTree& tree, const ViewOrigins* origins,
                                   const BoundEffects& bound) {
    pool::Vector<DrawnView> found;
    layout::walkDrawn<WalkedView>(tree, [&](WalkedView& at) {
        const layout::LayoutNode& node = tree.node(at.index);
        const AnyView& view = *node.view;
        if (const CodingPath* const way = origins ? origins->find(view) : nullptr) at.origin = way;
        if (traitsOf(node.kind).clips) {
            at.isClipped = true;
            if (layout::isEmpty(node.frame)) at.mayAppear = true;
        } else if (traitsOf(node.kind).isEffect) {
            const bool isBound = !bound.empty() && at.origin && bound.contains(toText(*at.origin));
            if (at.isClipped || isBound || view.as<ClockHandRotationEffect>()) at.mayAppear = true;
        }
        if (view.as<Text>() || view.as<FlexibleFrame>() || view.as<WebImage>() || view.as<Link>()) found.push_back(at);
        return true;
    });
    return found;
}

}  // namespace tavrin
