// SPDX-License-Identifier: MIT
#include "cli/missing_pictures.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

#include "tavrin/images/web_image.h"
#include "tavrin/platform/layout/drawing_walk.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin::cli {
namespace {

bool isMissing(const layout::LayoutTree& tree, layout::LayoutTree::Index index) {
    const auto* const image = tree.node(index).view->as<WebImage>();
    if (!image || !(image->url || image->alt)) return false;
    const auto* const drawn = tree.node(tree.content(index)).view->as<Image>();
    return drawn && !drawn->bitmap;
}

/// What can be said of all of them at once.
std::string reasonOf(const DocumentArguments& arguments) {
    std::error_code error;
    if (arguments.imageCacheDir && !std::filesystem::is_directory(*arguments.imageCacheDir, error))
        return ", since there is no folder '" + arguments.imageCacheDir->string() + "'";
    if (!arguments.imageCacheDir && arguments.widget.fetchPolicy == FetchPolicy::none)
        return ", since nothing may be fetched";
    return "; `tavrin check` says which";
}

}  // namespace

void noteMissingPictures(Widget& widget, const DocumentArguments& arguments, std::vector<std::string>& notes) {
    const layout::LayoutTree& tree = widget.layoutTree();
    std::size_t count = 0;
    layout::walkDrawn<layout::DrawnPlace>(tree, [&](const layout::DrawnPlace& at) {
        count += std::size_t{isMissing(tree, at.index)};
        return true;
    });
    if (count == 0) return;
    const std::string pictures = count == 1 ? "1 picture is" : std::to_string(count) + " pictures are";
    notes.push_back("warning: " + pictures + " missing" + reasonOf(arguments));
}

}  // namespace tavrin::cli
