// SPDX-License-Identifier: MIT
#include "tavrin/nodes/progress_node.h"

#include "tavrin/nodes/progress_styles.h"

namespace tavrin {
namespace {

std::optional<AnyView> rendered(std::string_view key, const std::optional<ColorNode>& color, Context& context) {
    return color ? std::optional(within(key, [&] { return color->render(context); })) : std::nullopt;
}

template <ProgressViewStyle Style>
AnyView progressView(const ProgressNode& node, Style style) {
    return ProgressView<Style>{.value = double{node.value.wrappedValue()}, .total = 1, .style = std::move(style)};
}

}  // namespace

AnyView ProgressNode::render(Context& context) const {
    std::optional<AnyView> arc = rendered("color", color.wrappedValue, context);
    std::optional<AnyView> track = rendered("background", background.wrappedValue, context);
    std::optional<AnyView> attached;
    ProgressAttachment::Position position = Keywords<ProgressAttachment::Position>::defaultCase;
    if (const std::optional<ProgressAttachment>& given = attachment.wrappedValue) {
        attached = within(keyOf<&ProgressNode::attachment>, [&] {
            return within(keyOf<&ProgressAttachment::view>, [&] { return given->view.wrappedValue.render(context); });
        });
        position = given->position.wrappedValue();
    }
    const float width = lineWidth.wrappedValue();
    const LineCap cap = lineCap.wrappedValue().value_or(Keywords<LineCap>::defaultCase);
    const bool isFlipped = flip.wrappedValue().value_or(false);

    AnyView view;
    switch (style.wrappedValue()) {
        case Style::circular:
            view = progressView(*this, CircularProgressViewStyle{.lineWidth = width,
                                                                 .lineCap = cap,
                                                                 .attachment = std::move(attached),
                                                                 .color = std::move(arc),
                                                                 .background = std::move(track),
                                                                 .flip = isFlipped});
            break;
        case Style::linear:
            view = progressView(*this, LinearProgressViewStyle{.lineWidth = width,
                                                               .lineCap = cap,
                                                               .lineCornerRadius = lineCornerRadius.wrappedValue(),
                                                               .attachment = std::move(attached),
                                                               .attachmentPosition = position,
                                                               .color = std::move(arc),
                                                               .background = std::move(track),
                                                               .flip = isFlipped});
            break;
    }
    return applyModifiers(*this, std::move(view), context);
}

}  // namespace tavrin
