#include "tavrin/images/web_image_node.h"

#include "tavrin/dsl/render_state.h"
#include "tavrin/images/web_image.h"
#include "tavrin/images/web_image_hasher.h"

namespace tavrin {
namespace {

/// Where a picture is to be had: at its address, or in the host's folder under its hashed name, an address or not.
std::optional<URL> placeOf(std::string_view address, const Context& context) {
    if (context.imageCacheDir) return context.imageCacheDir->appendingPathComponent(WebImageHasher(address));
    return URL::parse(address);
}

}  // namespace

AnyView WebImageNode::render(Context& context) const {
    const SharedText first = url.wrappedValue();
    const std::optional<SharedText> second = alt.wrappedValue();
    RenderState::of(context).cacheImage(first);
    WebImage image{.url = placeOf(first, context),
                   .alt = second ? placeOf(*second, context) : std::nullopt,
                   .local = context.imageCacheDir.has_value(),
                   .maxImageSize = context.maxImageSize,
                   .logger = context.logger(),
                   .fetchPolicy = context.fetchPolicy,
                   .written = first,
                   .writtenAlt = second.value_or(SharedText())};
    return applyModifiers(*this, std::move(image), context);
}

}  // namespace tavrin
