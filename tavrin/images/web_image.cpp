// SPDX-License-Identifier: MIT
#include "tavrin/images/web_image.h"

#include <utility>

#include "tavrin/images/image_processer.h"
#include "tavrin/images/log_record.h"
#include "tavrin/images/web_image_cache.h"
#include "tavrin/platform/foundation/net/url_session.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

/// Whether the picture is known without waiting for anything.
bool isReady(const WebImage& image) {
    for (const auto* address : {&image.url, &image.alt}) {
        if (!*address) continue;
        if (WebImageCache::shared().holds(**address)) return true;
        if (image.local == true || !refusal(**address, image.fetchPolicy)) return false;
    }
    return true;
}

/// Everything that what is loaded depends on. No address holds a blank.
std::string keyOf(const WebImage& image) {
    std::string key = (image.url ? image.url->string() : "") + ' ' + (image.alt ? image.alt->string() : "");
    key += image.local == true ? " local " : " remote ";
    key += toText(static_cast<int>(image.fetchPolicy));
    if (image.maxImageSize) key += ' ' + toText(image.maxImageSize->width) + 'x' + toText(image.maxImageSize->height);
    return key;
}

}  // namespace

Loading WebImage::loading() const {
    // The logger belongs to the thread that lays out: what it is to hear waits until then. Views that share a load each
    // tell it.
    const auto load = [image = *this]() -> Loading::Body {
        const auto heard = std::make_shared<LogRecord>();
        std::shared_ptr<const Bitmap> picture = image.load(heard.get());
        return [logger = image.logger, heard, picture = std::move(picture)](const EnvironmentValues&) -> AnyView {
            heard->replay(logger.get());
            return Image{.bitmap = picture};
        };
    };
    return {keyOf(*this), isReady(*this), load};
}

std::shared_ptr<const Bitmap> WebImage::load(Logger* listener) const {
    for (const auto* address : {&url, &alt}) {
        if (!*address) continue;
        if (std::shared_ptr<const Bitmap> picture = load(**address, listener)) return picture;
    }
    return nullptr;
}

std::shared_ptr<const Bitmap> WebImage::load(const URL& address, Logger* listener) const {
    WebImageCache& cache = WebImageCache::shared();
    std::shared_ptr<const Bitmap> picture = local == true ? cache.loadImageFromFile(address, listener)
                                                          : cache.loadImageSync(address, listener, fetchPolicy);
    if (picture && maxImageSize) return ImageProcesser(*maxImageSize).fit(picture);
    return picture;
}

void WebImage::write(ViewWriter& printed) const {
    JSONWriter& writer = printed.json();
    const auto address = [&](const std::optional<URL>& value) {
        if (value) {
            writer.value(value->string());
        } else {
            writer.value(nullptr);
        }
    };
    writer.key("url");
    address(url);
    writer.key("alt");
    address(alt);
    writer.key("placeholder").value(placeholder);
    writer.key("local");
    if (local) {
        writer.value(*local);
    } else {
        writer.value(nullptr);
    }
    writer.key("maxImageSize");
    if (maxImageSize) {
        writer.beginArray().value(maxImageSize->width).value(maxImageSize->height).endArray();
    } else {
        writer.value(nullptr);
    }
}

}  // namespace tavrin
