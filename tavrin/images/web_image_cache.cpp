#include "tavrin/images/web_image_cache.h"

#include <condition_variable>
#include <exception>
#include <string>
#include <unordered_set>
#include <utility>

#include "tavrin/images/image_decoder.h"
#include "tavrin/platform/foundation/file_contents.h"
#include "tavrin/platform/foundation/main_queue.h"
#include "tavrin/platform/foundation/number_text.h"

namespace tavrin {

/// A picture, or none, and how it was decoded.
struct WebImageCache::Decoded {
    std::shared_ptr<const Bitmap> image = nullptr;
    /// The size it was decoded small for, if it was.
    std::optional<Size> decodedFor = std::nullopt;
};

/// Where a download leaves its picture for who waits for it.
struct WebImageCache::Slot {
    std::mutex mutex;
    std::condition_variable filled;
    bool isFilled = false;
    Decoded decoded;
    std::optional<URLError> error;
};

namespace {

void logError(Logger* logger, std::string_view code, const std::string& message) {
    if (logger) logger->error(code, message);
}

void logRefusal(Logger* logger, const URL& url, const std::string& reason) {
    logError(logger, "LoadImageRefused", "Load Image Refused: " + url.string() + ": " + reason);
}

void logFailure(Logger* logger, const URL& url) {
    logError(logger, "LoadImageError", "Load Image Failed: " + url.string());
}

bool isSmallCopy(const Bitmap& image) {
    return image.sourceSize() != Size{static_cast<double>(image.width()), static_cast<double>(image.height())};
}

}  // namespace

std::string keyOf(const ImageLoadOptions& options) {
    std::string key = toText(static_cast<int>(options.fetchPolicy));
    if (options.wanted) key += ' ' + toText(options.wanted->width) + 'x' + toText(options.wanted->height);
    return key;
}

WebImageCache& WebImageCache::shared() {
    // Downloads may still end while the process does.
    static WebImageCache& cache = *new WebImageCache(URLSession::shared());
    return cache;
}

WebImageCache::Decoded WebImageCache::decode(const URLResponse& response, const std::optional<Size>& wanted) noexcept {
    try {
        if (response.error) return {};
        Decoded decoded{decodeImage(response.data, {.wanted = wanted})};
        if (decoded.image && isSmallCopy(*decoded.image)) decoded.decodedFor = wanted;
        return decoded;
    } catch (const std::exception&) {  // there is not enough memory for it
        return {};
    }
}

void WebImageCache::keep(const URL& url, const Decoded& decoded) {
    if (decoded.image) cache_.keep(url, decoded.image, decoded.decodedFor);
}

std::shared_ptr<const Bitmap> WebImageCache::loadImageSync(const URL& url, Logger* logger,
                                                           const ImageLoadOptions& options) {
    if (std::shared_ptr<const Bitmap> known = cache_.find(url, options.wanted)) return known;
    if (const std::optional<std::string> reason = refusal(url, options.fetchPolicy)) {
        logRefusal(logger, url, *reason);
        logFailure(logger, url);
        return nullptr;
    }
    const auto end = std::chrono::steady_clock::now() + timeLimit;
    const auto slot = std::make_shared<Slot>();
    const auto task = session_.dataTask({url, options.fetchPolicy, true},
                                        [slot, wanted = options.wanted](const URLResponse& response) {
                                            Decoded decoded = decode(response, wanted);
                                            const std::lock_guard lock(slot->mutex);
                                            slot->decoded = std::move(decoded);
                                            slot->error = response.error;
                                            slot->isFilled = true;
                                            slot->filled.notify_one();
                                        });

    std::unique_lock lock(slot->mutex);
    const bool isInTime = slot->filled.wait_until(lock, end, [&] { return slot->isFilled; });
    const Decoded decoded = std::move(slot->decoded);
    const std::optional<URLError> error = slot->error;
    lock.unlock();
    if (!isInTime) {
        task->cancel();
        logError(logger, "LoadImageTimeOut", "Load Image Timeout: " + url.string());
    }
    keep(url, decoded);
    if (decoded.image) return decoded.image;
    if (error && error->code == URLError::Code::refused) logRefusal(logger, url, error->message);
    logFailure(logger, url);
    return nullptr;
}

std::shared_ptr<const Bitmap> WebImageCache::loadImageFromFile(const URL& url, Logger* logger,
                                                               const ImageLoadOptions& options) {
    if (std::shared_ptr<const Bitmap> known = cache_.find(url, options.wanted)) return known;
    FileContents file = readFile(url.filePath(), maximumFileBytes);
    if (!file.error.empty()) {
        logError(logger, "LoadImageError", "Load local file error: " + file.error);
        return nullptr;
    }
    const Decoded decoded = decode({std::move(file.bytes), 0, std::nullopt}, options.wanted);
    keep(url, decoded);
    return decoded.image;
}

void WebImageCache::cacheImages(const std::vector<URL>& urls, std::function<void()> compeletion,
                                const ImageLoadOptions& options) {
    if (urls.empty() && !compeletion) return;
    const Group group(nullptr, [compeletion = std::move(compeletion)](void*) {
        if (compeletion) MainQueue::shared().post(compeletion);
    });
    std::unordered_set<std::string_view> seen;
    for (const URL& url : urls)
        if (seen.insert(url.string()).second && !cache_.holds(url, options.wanted) &&
            !refusal(url, options.fetchPolicy))
            prefetch(url, group, options);
}

void WebImageCache::prefetch(const URL& url, const Group& group, const ImageLoadOptions& options) {
    // Only a prefetch that is alike may stand for another. No address holds a blank.
    std::string key = url.string() + ' ' + keyOf(options);
    {
        const std::lock_guard lock(mutex_);
        const auto [underWay, isNew] = prefetches_.try_emplace(key);
        underWay->second.push_back(group);
        if (!isNew) return;
    }
    const auto end = [this, url, key = std::move(key), wanted = options.wanted](const URLResponse& response) {
        keep(url, decode(response, wanted));
        std::vector<Group> groups;
        const std::lock_guard lock(mutex_);
        const auto underWay = prefetches_.find(key);
        groups.swap(underWay->second);
        prefetches_.erase(underWay);
    };
    session_.dataTask({url, options.fetchPolicy}, end);
}

}  // namespace tavrin
