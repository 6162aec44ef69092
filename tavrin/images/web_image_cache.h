// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "tavrin/platform/foundation/logger.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"

namespace tavrin {

class ImageLoads;
class URLSession;

/// The pictures of web images, loaded from the network or from files and kept in memory by their exact address; a file
/// and the address it was fetched from are two. An address is loaded once at a time, however many threads and
/// prefetches ask for it. Thread-safe.
///
/// A picture in memory is found under every policy: no request is made for it.
class WebImageCache {
public:
    /// How long `loadImageSync` waits at most, in seconds.
    static constexpr int timeLimit = 2;
    /// Larger files and downloads are refused.
    static constexpr std::size_t maximumFileBytes = std::size_t{32} << 20;

    /// The process's cache. It is never cleared, nor destroyed; in a forked child it is empty at first, and of the
    /// usual size.
    static WebImageCache& shared();

    explicit WebImageCache(URLSession& session);

    /// Begins to load the pictures that are not in memory yet, and returns at once. When all are loaded or have failed,
    /// `compeletion` is posted to `MainQueue::shared()`, if one is given. Nothing is logged.
    void cacheImages(const std::vector<URL>& urls, std::function<void()> compeletion,
                     FetchPolicy policy = FetchPolicy::all);

    // What a picture takes counts for the calling thread, the same from wherever it comes, and its bytes count as held
    // from then on. A thread that has not enough budget for a picture, or for waiting, throws what its budget says.

    /// The picture of an address, from memory or from the network; null when there is none within 2.0 seconds, or half
    /// of those that the thread's budget has left. What arrives when no one waits for it any more is dropped. A picture
    /// that stands in a `data` URL itself is waited for until it is decoded. `logger`, which may be null, hears of
    /// failures on the calling thread, with the codes "LoadImageRefused" (by the fetch policy), "LoadImageTimeOut" and,
    /// last, "LoadImageError".
    std::shared_ptr<const Bitmap> loadImageSync(const URL& url, Logger* logger, FetchPolicy policy = FetchPolicy::all);

    /// The picture of a file, from memory or from disk; null when it cannot be read, which `logger` hears of with the
    /// code "LoadImageError", or holds no picture.
    std::shared_ptr<const Bitmap> loadImageFromFile(const URL& url, Logger* logger);

    /// Whether the picture is in memory.
    [[nodiscard]] bool holds(const URL& url) const;

    /// How much memory the pictures may take, in bytes; 256 MiB unless set. The oldest go first.
    void setMaximumBytes(std::size_t bytes);
    [[nodiscard]] std::size_t maximumBytes() const;
    /// How much they take now.
    [[nodiscard]] std::size_t bytes() const;

private:
    void beginAnew();

    URLSession& session_;
    /// Loads that end later hold it, too.
    std::shared_ptr<ImageLoads> loads_;
};

}  // namespace tavrin
