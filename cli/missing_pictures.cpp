// SPDX-License-Identifier: MIT
#include "cli/missing_pictures.h"

#include <cstddef>
#include <optional>

#include "tavrin/images/web_image.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/drawing_walk.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin::cli {
namespace {

/// The picture that a view is and could not have; null where it is none, or has it.
const WebImage* missingPicture(const layout::LayoutTree& tree, layout::LayoutTree::Index index) {
    const auto* const image = tree.node(index).view->as<WebImage>();
    if (!image || !(image->url || image->alt)) return nullptr;
    const auto* const drawn = tree.node(tree.content(index)).view->as<Image>();
    return drawn && !drawn->bitmap ? image : nullptr;
}

std::string addressOf(const URL& url, bool isLocal) {
    return isLocal ? "the file '" + url.filePath() + "'" : "'" + url.shortened() + "'";
}

std::string addressesOf(const WebImage& image) {
    std::string text;
    for (const std::optional<URL>* const url : {&image.url, &image.alt})
        if (*url) text += (text.empty() ? "" : " or ") + addressOf(**url, image.local == true);
    return text;
}

}  // namespace

std::vector<std::string> missingPictures(Widget& widget) {
    const layout::LayoutTree& tree = widget.layoutTree();
    std::vector<std::string> addresses;
    layout::walkDrawn<layout::DrawnPlace>(tree, [&](const layout::DrawnPlace& at) {
        if (const WebImage* const image = missingPicture(tree, at.index)) addresses.push_back(addressesOf(*image));
        return true;
    });
    return addresses;
}

void refuseMissingPictures(Widget& widget) {
    constexpr std::size_t mostNamed = 5;
    const std::vector<std::string> missing = missingPictures(widget);
    if (missing.empty()) return;
    std::string message = "no picture could be had from ";
    for (std::size_t i = 0; i < missing.size() && i < mostNamed; ++i) message += (i == 0 ? "" : ", from ") + missing[i];
    if (missing.size() > mostNamed) message += " and from " + std::to_string(missing.size() - mostNamed) + " more";
    throw TavrinError{"MissingPicture", message};
}

}  // namespace tavrin::cli
