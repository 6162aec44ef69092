// SPDX-License-Identifier: MIT
#include "tavrin/images/web_image_cache.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tavrin/images/image_loads.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/file_contents.h"
#include "tavrin/platform/foundation/threads/forked_child.h"
#include "tavrin/platform/foundation/threads/main_queue.h"

namespace tavrin {
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

ImageLoads::Outcome readPicture(const URL& url, images::Decoding decoding) noexcept {
    try {
        // What the file grows by meanwhile has bounds of its own.
        std::error_code unknown;
        const std::uintmax_t size = std::filesystem::file_size(url.filePath(), unknown);
        if (!unknown && decoding.mayBeHeld &&
            !decoding.mayBeHeld(std::min<std::uintmax_t>(size, WebImageCache::maximumFileBytes)))
            return {.isGivenUp = true};
        FileContents file = readFile(url.filePath(), WebImageCache::maximumFileBytes);
        if (!file.error.empty()) return {nullptr, URLError{URLError::Code::failed, std::move(file.error)}};
        return ImageLoads::decoded({std::move(file.bytes), 0, std::nullopt}, std::move(decoding));
    } catch (const std::exception&) {  // there is not enough memory for it
        return {};
    }
}

/// Counts what a picture costs: the same whether it was in memory, was decoded, or turned out not to be one.
void count(const ImageLoads::Outcome& outcome) {
    Meter& meter = Meter::ofThisThread();
    HeldBytes meanwhile(outcome.meanwhile);
    if (outcome.image)
        meter.hold(outcome.image->byteCount());
    else
        meanwhile.grow(outcome.pixels * sizeof(std::uint32_t));
    meter.paint(outcome.image ? outcome.image->byteCount() / sizeof(std::uint32_t) : outcome.pixels);
}

/// Until when the calling thread waits for a picture: some of its time must be left to draw without it.
std::chrono::steady_clock::time_point endOfWaiting() {
    const auto now = std::chrono::steady_clock::now();
    const auto end = now + std::chrono::seconds(WebImageCache::timeLimit);
    const Metering* const metering = Metering::ofThisThread();
    return metering && metering->end() ? std::min(end, now + (*metering->end() - now) / 2) : end;
}

/// What a load comes to. One that was given up for want of budget is begun anew where this thread has enough of it:
/// those who waited before had less.
template <class LoadOnce>
ImageLoads::Outcome load(const LoadOnce& loadOnce) {
    for (;;) {
        ImageLoads::Outcome outcome = loadOnce();
        if (!outcome.isGivenUp) {
            count(outcome);
            return outcome;
        }
        const HeldBytes needed(outcome.needed);
        checkBudget();
    }
}

}  // namespace

WebImageCache& WebImageCache::shared() {
    // Downloads may still end while the process does.
    static WebImageCache& cache = *new WebImageCache(URLSession::shared());
    [[maybe_unused]] static const bool isForkable = beginAnewInChildren([] { cache.beginAnew(); });
    return cache;
}

void WebImageCache::beginAnew() {
    // Nobody ends the loads that were under way, nor gives back a lock that was held.
    static auto& others = *new std::vector<std::shared_ptr<ImageLoads>>;
    others.push_back(std::exchange(loads_, std::make_shared<ImageLoads>()));
}

WebImageCache::WebImageCache(URLSession& session) : session_(session), loads_(std::make_shared<ImageLoads>()) {}

std::shared_ptr<const Bitmap> WebImageCache::loadImageSync(const URL& url, Logger* logger, FetchPolicy policy) {
    const auto end = endOfWaiting();
    if (ImageLoads::Outcome known = loads_->inMemory(url); known.image) {
        count(known);
        return std::move(known.image);
    }
    if (const std::optional<std::string> reason = refusal(url, policy)) {
        logRefusal(logger, url, *reason);
        logFailure(logger, url);
        return nullptr;
    }
    // What stands in the document itself never comes late: the same document is the same picture.
    const auto limit = url.isData() ? std::nullopt : std::optional(end);
    ImageLoads::Outcome outcome = load([&] { return loads_->wait({url, policy}, session_, limit); });
    if (outcome.image) return std::move(outcome.image);
    if (!outcome.isInTime) logError(logger, "LoadImageTimeOut", "Load Image Timeout: " + url.string());
    if (outcome.error && outcome.error->code == URLError::Code::refused)
        logRefusal(logger, url, outcome.error->message);
    logFailure(logger, url);
    return nullptr;
}

std::shared_ptr<const Bitmap> WebImageCache::loadImageFromFile(const URL& url, Logger* logger) {
    const auto read = [&url](images::Decoding decoding) { return readPicture(url, std::move(decoding)); };
    ImageLoads::Outcome outcome = load([&] { return loads_->make({.url = url, .isLocal = true}, read); });
    if (outcome.error) logError(logger, "LoadImageError", "Load local file error: " + outcome.error->message);
    return std::move(outcome.image);
}

void WebImageCache::cacheImages(const std::vector<URL>& urls, std::function<void()> compeletion, FetchPolicy policy) {
    if (urls.empty() && !compeletion) return;
    const ImageLoads::Prefetch prefetch(nullptr, [compeletion = std::move(compeletion)](void*) {
        if (compeletion) MainQueue::shared().post(compeletion);
    });
    std::unordered_set<std::string_view> seen;
    for (const URL& url : urls)
        if (seen.insert(url.string()).second && !refusal(url, policy)) loads_->begin({url, policy}, session_, prefetch);
}

bool WebImageCache::holds(const URL& url) const { return loads_->memory.holds(url); }

void WebImageCache::setMaximumBytes(std::size_t bytes) { loads_->memory.setMaximumBytes(bytes); }

std::size_t WebImageCache::maximumBytes() const { return loads_->memory.maximumBytes(); }

std::size_t WebImageCache::bytes() const { return loads_->memory.bytes(); }

}  // namespace tavrin
