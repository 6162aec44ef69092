// SPDX-License-Identifier: MIT
#include "cli/preview/end_deadline.h"

#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <stop_token>
#include <utility>

namespace tavrin::cli {

EndDeadline::EndDeadline(std::chrono::milliseconds patience, std::function<void()> finish)
    : patience_(patience), finish_(std::move(finish)) {}

void EndDeadline::start() {
    thread_ = std::jthread([this](const std::stop_token& inTime) {
        std::mutex mutex;
        std::condition_variable_any waiting;
        std::unique_lock lock(mutex);
        waiting.wait_for(lock, inTime, patience_, [] { return false; });
        if (inTime.stop_requested()) return;
        finish_();
        std::_Exit(0);
    });
}

}  // namespace tavrin::cli
