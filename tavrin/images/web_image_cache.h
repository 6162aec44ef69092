#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "tavrin/images/image_memory.h"
#include "tavrin/platform/foundation/bitmap.h"
#include "tavrin/platform/foundation/fetch_policy.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/logger.h"
#include "tavrin/platform/foundation/url.h"
#include "tavrin/platform/foundation/url_session.h"

namespace tavrin {

/// How a picture is loaded.
struct ImageLoadOptions {
    /// What may be fetched. A picture in memory is found under every policy: no request is made for it.
    FetchPolicy fetchPolicy = FetchPolicy::all;
    /// The size that the picture will be made to fit in, in pixels: a large JPEG is then decoded smaller.
    std::optional<Size> wanted = std::nullopt;
};

/// The options as a text that is the same for the same options alone.
[[nodiscard]] std::string keyOf(const ImageLoadOptions& options);

/// The pictures of web images, loaded from the network or from files and kept in memory by their exact address; a file
/// and the address it was fetched from are two. Thread-safe.
class WebImageCache {
public:
    /// How long `loadImageSync` waits at most.
    static constexpr std::chrono::milliseconds timeLimit{2000};
    /// Larger files and downloads are refused.
    static constexpr std::size_t maximumFileBytes = std::size_t{32} << 20;

    /// The process's cache. It is never cleared, nor destroyed.
    static WebImageCache& shared();

    explicit WebImageCache(URLSession& session) : session_(session) {}

    /// Begins to load the pictures that are not in memory yet, and returns at once. When all are loaded or have failed,
    /// `compeletion` is posted to `MainQueue::shared()`, if one is given. Nothing is logged.
    void cacheImages(const std::vector<URL>& urls, std::function<void()> compeletion,
                     const ImageLoadOptions& options = {});

    /// The picture of an address, from memory or from the network; null when there is none within 2.0 seconds. What
    /// arrives later is dropped. `logger`, which may be null, hears of failures on the calling thread, with the codes
    /// "LoadImageRefused" (by the fetch policy), "LoadImageTimeOut" and, last, "LoadImageError".
    std::shared_ptr<const Bitmap> loadImageSync(const URL& url, Logger* logger, const ImageLoadOptions& options = {});

    /// The picture of a file, from memory or from disk; null when it cannot be read, which `logger` hears of with the
    /// code "LoadImageError", or holds no picture.
    std::shared_ptr<const Bitmap> loadImageFromFile(const URL& url, Logger* logger,
                                                    const ImageLoadOptions& options = {});

    /// Whether the picture is in memory.
    [[nodiscard]] bool holds(const URL& url, const ImageLoadOptions& options = {}) const {
        return cache_.holds(url, options.wanted);
    }

    /// How much memory the pictures may take, in bytes; 256 MiB unless set. The oldest go first.
    void setMaximumBytes(std::size_t bytes) { cache_.setMaximumBytes(bytes); }
    [[nodiscard]] std::size_t maximumBytes() const { return cache_.maximumBytes(); }
    /// How much they take now.
    [[nodiscard]] std::size_t bytes() const { return cache_.bytes(); }

private:
    struct Decoded;
    struct Slot;
    /// Ends when all who hold it are through; then posts a prefetch's completion.
    using Group = std::shared_ptr<void>;

    static Decoded decode(const URLResponse& response, const std::optional<Size>& wanted) noexcept;
    void keep(const URL& url, const Decoded& decoded);
    void prefetch(const URL& url, const Group& group, const ImageLoadOptions& options);

    URLSession& session_;
    ImageMemory cache_{std::size_t{256} << 20};

    std::mutex mutex_;
    /// The prefetches that are under way, by what they load and how, and who waits for each.
    std::unordered_map<std::string, std::vector<Group>> prefetches_;
};

}  // namespace tavrin
