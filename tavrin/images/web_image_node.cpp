// SPDX-License-Identifier: MIT
#include "tavrin/images/web_image_node.h"

#include "tavrin/dsl/address.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/images/web_image.h"
#include "tavrin/images/web_image_hasher.h"

namespace tavrin {
namespace {

/// Where a picture is to be had: at its address, or in the host's folder under its hashed name, an address or not.
template <class Property>
std::optional<URL> placeOf(const Property& address, const SharedText& written, const Context& context) {
    if (context.imageCacheDir) return context.imageCacheDir->appendingPathComponent(WebImageHasher(written));
    return addressOf(address);
}

}  // namespace

AnyView WebImageNode::render(Context& context) const {
    const SharedText first = url.wrappedValue();
    const std::optional<SharedText> second = alt.wrappedValue();
    if (url.resolved()) RenderState::of(context).cacheImage(first);
    WebImage image{.url = placeOf(url, first, context),
                   .alt = second ? placeOf(alt, *second, context) : std::nullopt,
                   .local = context.imageCacheDir.has_value(),
                   .maxImageSize = context.maxImageSize,
                   .logger = context.logger(),
                   .fetchPolicy = context.fetchPolicy,
                   .written = first,
                   .writtenAlt = second.value_or(SharedText())};
    return applyModifiers(*this, std::move(image), context);
}

}  // namespace tavrin
