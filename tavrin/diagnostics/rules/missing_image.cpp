// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/images/web_image.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

std::string describe(const std::optional<URL>& address, bool isLocal) {
    return isLocal ? "the file " + inQuotes(address->filePath()) : inQuotes(address->shortened());
}

}  // namespace

void findMissingImages(const DrawnSubject& subject, DrawnFindings& findings) {
    const bool mayFetch = subject.widget.options().fetchPolicy != FetchPolicy::none;
    for (const DrawnView& view : subject.views) {
        const auto* const image = subject.tree.node(view.index).view->as<WebImage>();
        if (!image || !(image->url || image->alt)) continue;
        const bool isLocal = image->local == true;
        const auto isUnasked = [&](const std::optional<URL>& address) {
            return address && !isLocal && !mayFetch && !address->isData();
        };
        if (!subject.missesUnasked && (isUnasked(image->url) || isUnasked(image->alt))) continue;
        const auto* const drawn = subject.tree.node(subject.tree.content(view.index)).view->as<Image>();
        if (!drawn || drawn->bitmap) continue;
        std::string message = "no picture could be had from ";
        if (image->url) message += describe(image->url, isLocal);
        if (image->alt) message += (image->url ? " or " : "") + describe(image->alt, isLocal);
        findings.add(Rule::missingImage, view.origin, std::move(message));
    }
}

}  // namespace tavrin
