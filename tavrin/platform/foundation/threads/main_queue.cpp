// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/threads/main_queue.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace tavrin {

struct MainQueue::Blocks {
    /// Takes the next block; an empty one when there is none.
    std::function<void()> take() {
        const std::lock_guard lock(mutex);
        if (list.empty()) return {};
        std::function<void()> block = std::move(list.front());
        list.pop_front();
        return block;
    }

    std::mutex mutex;
    std::condition_variable posted;
    std::deque<std::function<void()>> list;
};

MainQueue::MainQueue() : blocks_(std::make_unique<Blocks>()) {}

MainQueue::~MainQueue() = default;

MainQueue& MainQueue::shared() {
    // Other threads may still post while the process ends.
    static MainQueue& queue = *new MainQueue;
    return queue;
}

void MainQueue::post(std::function<void()> block) {
    {
        const std::lock_guard lock(blocks_->mutex);
        blocks_->list.push_back(std::move(block));
    }
    blocks_->posted.notify_one();
}

std::size_t MainQueue::runPending() {
    std::size_t count = 0;
    {
        const std::lock_guard lock(blocks_->mutex);
        count = blocks_->list.size();
    }
    std::size_t ran = 0;
    for (; ran < count; ++ran) {
        const std::function<void()> block = blocks_->take();
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
        std::unique_lock lock(blocks_->mutex);
        if (!blocks_->posted.wait_until(lock, end, [this] { return !blocks_->list.empty(); })) return ran;
    }
}

}  // namespace tavrin
