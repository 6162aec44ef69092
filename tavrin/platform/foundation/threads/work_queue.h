// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrin {

/// Blocks that a few threads of its own run; urgent ones first, else in their order. One thread, where there are
/// several, is kept free of blocks that are not urgent: they never hold up one that is. Threads start when there is
/// work for them. Thread-safe.
class WorkQueue {
public:
    explicit WorkQueue(std::size_t maximumThreads) : maximumThreads_(maximumThreads) {}
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;
    ~WorkQueue() { finish(); }

    /// A block must not throw. Where there is no thread, also after `finish`, it runs at once.
    void post(std::function<void()> block, bool isUrgent = false);

    /// Runs what is posted by now and ends the threads.
    void finish();

private:
    void work();
    /// Whether one more block that is not urgent may run beside those that do.
    [[nodiscard]] bool hasRoomForOthers() const {
        return othersRunning_ + 1 < maximumThreads_ || othersRunning_ == 0 || finishing_;
    }

    const std::size_t maximumThreads_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> urgent_;
    std::deque<std::function<void()>> others_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    std::size_t othersRunning_ = 0;
    bool finishing_ = false;
};

}  // namespace tavrin
