#include "tavrin/images/web_image_cache.h"

#include <condition_variable>
#include <exception>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "tavrin/images/image_decoder.h"
#include "tavrin/platform/foundation/file_contents.h"
#include "tavrin/platform/foundation/main_queue.h"

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

/// Whether a picture may have been decoded smaller than it is: only JPEGs are, and never below what fits.
bool mayBeSmall(const Bitmap& image, std::string_view bytes, Size wanted) {
    return bytes.starts_with("\xFF\xD8") && (image.width() >= wanted.width || image.height() >= wanted.height);
}

}  // namespace

WebImageCache& WebImageCache::shared() {
    // Downloads may still end while the process does.
    static WebImageCache& cache = *new WebImageCache(URLSession::shared());
    return cache;
}

WebImageCache::Decoded WebImageCache::decode(const URLResponse& response, const std::optional<Size>& wanted) noexcept {
    try {
        if (response.error) return {};
        Decoded decoded{decodeImage(response.data, {.wanted = wanted})};
        if (decoded.image && wanted && mayBeSmall(*decoded.image, response.data, *wanted)) decoded.decodedFor = wanted;
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
    {
        const std::lock_guard lock(mutex_);
        const auto [underWay, isNew] = prefetches_.try_emplace(url);
        underWay->second.push_back(group);
        if (!isNew) return;
    }
    session_.dataTask({url, options.fetchPolicy}, [this, url, wanted = options.wanted](const URLResponse& response) {
        keep(url, decode(response, wanted));
        std::vector<Group> groups;
        const std::lock_guard lock(mutex_);
        const auto underWay = prefetches_.find(url);
        groups.swap(underWay->second);
        prefetches_.erase(underWay);
    });
}

}  // namespace tavrin
