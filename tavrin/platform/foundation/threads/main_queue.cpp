// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/threads/main_queue.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tavrin {

MainQueue& MainQueue::shared() {
    // Other threads may still post while the process ends.
    static MainQueue& queue = *new MainQueue;
    return queue;
}

void MainQueue::post(std::function<void()> block) {
    {
        const std::lock_guard lock(mutex_);
        blocks_.push_back(std::move(block));
    }
    posted_.notify_one();
}

std::function<void()> MainQueue::take() {
    const std::lock_guard lock(mutex_);
    if (blocks_.empty()) return {};
    std::function<void()> block = std::move(blocks_.front());
    blocks_.pop_front();
    return block;
}

std::size_t MainQueue::runPending() {
    std::size_t count = 0;
    {
        const std::lock_guard lock(mutex_);
        count = blocks_.size();
    }
    std::size_t ran = 0;
    for (; ran < count; ++ran) {
        const std::function<void()> block = take();
        if (!block) break;  // a block ran the queue itself
        block();
    }
    return ran;
}

std::size_t MainQueue::runFor(double seconds) {
    using Clock = std::chrono::steady_clock;
    constexpr double longest = 1e9;  // what a clock can still add
    const std::chrono::duration<double> time(seconds > 0 ? std::min(seconds, longest) : 0);
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(time);
    std::size_t ran = 0;
    for (;;) {
        ran += runPending();
        std::unique_lock lock(mutex_);
        if (!posted_.wait_until(lock, end, [this] { return !blocks_.empty(); })) return ran;
    }
}

}  // namespace tavrin
