// SPDX-License-Identifier: MIT
#include "tavrin/images/picture_downloads.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "tavrin/images/image_decoder.h"

namespace tavrin {
namespace {

// So many bodies may wait in memory to be written.
constexpr std::size_t maximumUnderWay = 64;
constexpr std::chrono::milliseconds firstPause{500};
constexpr std::chrono::milliseconds betweenLooks{100};

bool mayPass(const URLResponse& response) {
    if (!response.error) return response.status >= 500;
    return response.error->code == URLError::Code::failed || response.error->code == URLError::Code::timedOut;
}

/// Why a response is no picture; empty when it is one.
std::string fault(const URLResponse& response) {
    if (response.error) return response.error->message;
    if (decodeImage(response.data)) return {};
    return "there is no picture" + (response.status == 0 ? "" : " (status " + std::to_string(response.status) + ")");
}

}  // namespace

struct PictureDownloads::Arrivals {
    struct Arrival {
        Try attempt;
        URLResponse response;
        std::string fault;
    };
    std::mutex mutex;
    std::condition_variable came;
    std::deque<Arrival> list;
};

PictureDownloads::PictureDownloads(std::vector<URL> urls, FetchPolicy policy)
    : urls_(std::move(urls)), policy_(policy), arrivals_(std::make_shared<Arrivals>()) {
    for (std::size_t index = 0; index < urls_.size(); ++index) tries_.push_back({index, 1, Clock::now()});
}

std::optional<PictureDownload> PictureDownloads::next(const std::function<void()>& look) {
    for (;;) {
        beginTries();
        if (underWay_ == 0 && tries_.empty()) return std::nullopt;

        Clock::time_point end = Clock::now() + betweenLooks;
        if (!tries_.empty() && underWay_ < maximumUnderWay) end = std::min(end, tries_.front().begin);
        std::unique_lock lock(arrivals_->mutex);
        if (!arrivals_->came.wait_until(lock, end, [this] { return !arrivals_->list.empty(); })) {
            lock.unlock();
            if (look) look();
            continue;
        }
        auto [attempt, response, fault] = std::move(arrivals_->list.front());
        arrivals_->list.pop_front();
        lock.unlock();

        --underWay_;
        const URL& url = urls_[attempt.index];
        if (mayPass(response) && !url.isFile() && attempt.number < maximumTries) {
            tries_.push_back(
                {attempt.index, attempt.number + 1, Clock::now() + firstPause * (1 << (attempt.number - 1))});
            continue;
        }
        return PictureDownload{attempt.index, fault.empty() ? std::move(response.data) : std::string(),
                               std::move(fault)};
    }
}

void PictureDownloads::beginTries() {
    while (!tries_.empty() && underWay_ < maximumUnderWay && tries_.front().begin <= Clock::now()) {
        begin(tries_.front());
        tries_.pop_front();
    }
}

void PictureDownloads::begin(const Try& attempt) {
    ++underWay_;
    URLSession::shared().dataTask({urls_[attempt.index], policy_, true},
                                  [arrivals = arrivals_, attempt](URLResponse response) {
                                      std::string reason = fault(response);
                                      const std::lock_guard lock(arrivals->mutex);
                                      arrivals->list.push_back({attempt, std::move(response), std::move(reason)});
                                      arrivals->came.notify_one();
                                  });
}

}  // namespace tavrin
