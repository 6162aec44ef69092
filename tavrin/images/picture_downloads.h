// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/platform/foundation/net/url_session.h"

namespace tavrin {

/// A picture's bytes, or why there are none.
struct PictureDownload {
    std::size_t index;  ///< of its address
    std::string bytes = {};
    std::string error = {};
};

/// Downloads pictures, many at once, and hands them over one by one to the thread that asks. What fails for a reason
/// that may pass, a network's or a server's (status 500 and above), is tried again a few times, later each time.
class PictureDownloads {
public:
    static constexpr int maximumTries = 3;

    PictureDownloads(std::vector<URL> urls, FetchPolicy policy);
    PictureDownloads(const PictureDownloads&) = delete;
    PictureDownloads& operator=(const PictureDownloads&) = delete;

    /// Waits for the next picture that is there or has failed for good; none when all have been handed over. Meanwhile
    /// `look` is called some ten times a second; what it throws ends the waiting.
    std::optional<PictureDownload> next(const std::function<void()>& look = nullptr);

private:
    using Clock = std::chrono::steady_clock;
    struct Try {
        std::size_t index;
        int number;
        Clock::time_point begin;
    };
    struct Arrivals;

    void beginTries();
    void begin(const Try& attempt);

    std::vector<URL> urls_;
    FetchPolicy policy_;
    std::deque<Try> tries_;  // those that have not begun, the earliest first
    std::size_t underWay_ = 0;
    std::shared_ptr<Arrivals> arrivals_;
};

}  // namespace tavrin
