#include "tavrin/diagnostics/drawn_views.h"

#include "tavrin/images/web_image.h"

namespace tavrin {

std::vector<DrawnView> drawnViews(const layout::LayoutTree& tree, const ViewOrigins* origins) {
    std::vector<DrawnView> found;
    layout::walkDrawn<DrawnView>(tree, [&](DrawnView& at) {
        const AnyView& view = *tree.node(at.index).view;
        if (const CodingPath* const way = origins ? origins->find(view) : nullptr) at.origin = way;
        if (view.as<Text>() || view.as<FlexibleFrame>() || view.as<WebImage>()) found.push_back(at);
        return true;
    });
    return found;
}

}  // namespace tavrin
