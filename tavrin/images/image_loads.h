// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "tavrin/images/decoders.h"
#include "tavrin/images/image_memory.h"
#include "tavrin/platform/foundation/budget/shared_bytes.h"
#include "tavrin/platform/foundation/net/url_session.h"

namespace tavrin {

/// Pictures in memory, and the loads that are under way, one for each address. A load goes on while somebody waits for
/// it or a prefetch has asked for it; what it comes to then goes into memory, before it is over. Thread-safe.
class ImageLoads : public std::enable_shared_from_this<ImageLoads> {
public:
    /// Ends when all who hold it are through.
    using Prefetch = std::shared_ptr<void>;

    /// What is loaded, and how: only a load that is alike may stand for another.
    struct Key {
        URL url;
        FetchPolicy policy = FetchPolicy::all;
        bool isLocal = false;
        friend bool operator==(const Key&, const Key&) = default;
    };

    /// A picture, or why there is none.
    struct Outcome {
        std::shared_ptr<const Bitmap> image = nullptr;
        std::optional<URLError> error = std::nullopt;
        bool isInTime = true;
        /// The pixels that a file declares, and what was held beside them until it was decoded.
        std::uint64_t pixels = 0;
        std::size_t meanwhile = 0;
        /// Whether it was given up for want of budget, and what it would have taken: it may be loaded for those who
        /// have more.
        bool isGivenUp = false;
        std::size_t needed = 0;
    };

    /// What somebody who wants a picture may hold: bytes of their own, and what they share with others.
    struct Allowance {
        std::size_t bytes = SIZE_MAX;
        std::shared_ptr<SharedBytes> shared = nullptr;
    };

    /// Makes a picture of a response's body.
    static Outcome decoded(const URLResponse& response, images::Decoding decoding) noexcept;

    // Those who wait go on from the budget of their threads, and throw what it says when that ends. A picture is
    // decoded when one of them may hold it.

    /// Waits for a picture, until `end` if one is given.
    Outcome wait(const Key& key, URLSession& session, std::optional<std::chrono::steady_clock::time_point> end);
    /// Makes the picture on this thread by `make`, which must not throw, or waits for the thread that already does.
    using Make = std::function<Outcome(images::Decoding)>;
    Outcome make(const Key& key, const Make& make);
    /// Begins to load a picture, unless it is in memory or a load is under way; `prefetch` is held until it is over.
    void begin(const Key& key, URLSession& session, const Prefetch& prefetch);

    /// What is in memory of an address; without a picture where nothing is.
    Outcome inMemory(const URL& url);

    ImageMemory memory{std::size_t{256} << 20};

private:
    class Allowances;
    struct Load;
    using LoadPtr = std::shared_ptr<Load>;
    struct Hash {
        std::size_t operator()(const Key& key) const { return std::hash<URL>{}(key.url); }
    };
    struct Joined {
        LoadPtr load;
        bool isNew;
    };

    /// The load of an address, for someone who may hold so much. Called under the lock.
    Joined join(const Key& key, const Allowance& allowance);
    /// Waits until a load is over or `end` has come. Called under the lock.
    static void waitFor(Load& load, std::unique_lock<std::mutex>& lock,
                        std::optional<std::chrono::steady_clock::time_point> end);
    /// Begins to load; not under the lock, since the load may be over at once.
    void request(const Key& key, const LoadPtr& load, URLSession& session);
    void finish(const Key& key, Load& load, Outcome outcome);
    /// Takes leave of a load; the last one stops it. Called under the lock, which is given up.
    void leave(const Key& key, const LoadPtr& load, std::unique_lock<std::mutex> lock);

    std::mutex mutex_;
    std::unordered_map<Key, LoadPtr, Hash> underWay_;
};

}  // namespace tavrin
