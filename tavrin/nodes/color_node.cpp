// SPDX-License-Identifier: MIT
#include "tavrin/nodes/color_node.h"

#include <string_view>

#include "tavrin/nodes/color_string.h"
#include "tavrin/platform/foundation/strings/graphemes.h"
#include "tavrin/platform/ui/views.h"
#include "tavrin/values/mirror_key_path.h"

namespace tavrin {
namespace {

TavrinError invalidColor(const SharedText& value) { return {"ColorNode", "invalid color: " + std::string(value)}; }

/// The colours of a list joined by "-"; what is no colour is skipped.
std::vector<Color> colorsOf(std::string_view list) {
    std::vector<Color> colors;
    std::size_t begin = 0;
    const auto take = [&](std::size_t end) {
        if (const std::optional<Color> color = colorFromHexString(list.substr(begin, end - begin)))
            colors.push_back(*color);
        begin = end + 1;
    };
    for (GraphemeWalk walk(list); walk.next();)
        if (walk.character() == "-") take(walk.offset());
    take(list.size());
    return colors;
}

AnyView gradientView(const ColorNode& node) {
    const SharedText list = node.value.wrappedValue();
    std::vector<Color> colors = colorsOf(list);
    if (colors.empty()) throw invalidColor(list);
    const std::optional<UnitPointDSL> start = node.start.wrappedValue();
    const std::optional<UnitPointDSL> end = node.end.wrappedValue();
    if (!start || !end) throw TavrinError("ColorNode", "gradient must set start and end");
    return LinearGradient{
        .colors = std::move(colors), .startPoint = platformValue(*start), .endPoint = platformValue(*end)};
}

AnyView solidView(const ColorNode& node) {
    const SharedText value = node.value.wrappedValue();
    const std::optional<Color> color = colorFromHexString(value);
    if (!color) throw invalidColor(value);
    const std::optional<Color> dark = colorFromHexString(node.dark.wrappedValue());
    return dark ? dynamicColor(*color, *dark).value_or(*color) : *color;
}

}  // namespace

void ColorNode::bindToModel(const ModelContext& model) {
    const bool isOfModel = !value.resolved();
    bindFields(*this, model);
    if (isOfModel) value.setWrappedValue(convertARGB(value.wrappedValue()));
}

AnyView ColorNode::render(Context& context) const {
    const bool isGradient = gradient.wrappedValue() == true;
    return applyModifiers(*this, isGradient ? gradientView(*this) : solidView(*this), context);
}

std::optional<Color> plainColor(const ColorNode& node, Context& context) {
    const AnyView rendered = node.render(context);
    const auto* const color = mirrorKeyPath("storage.view", rendered).as<Color>();
    return color ? std::optional(*color) : std::nullopt;
}

}  // namespace tavrin
