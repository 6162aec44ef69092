// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace tavrin {

/// Blocks that any thread posts and one thread runs, in their order: the host's own, whenever it calls `runPending` or
/// `runFor`. Nothing runs by itself; what no one runs stays in the queue. Posting is thread-safe.
class MainQueue {
public:
    /// The process's queue, on which prefetches report that they are complete. Never destroyed.
    static MainQueue& shared();

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;

    void post(std::function<void()> block);

    /// Runs the blocks that are posted by now; those that they post wait for the next call. Returns how many ran. What
    /// a block throws is passed on; the blocks behind it stay.
    std::size_t runPending();

    /// Runs blocks as they come until `seconds` have passed, and at least those that are posted by now. Returns how
    /// many ran.
    std::size_t runFor(double seconds);

private:
    /// Takes the next block; an empty one when there is none.
    std::function<void()> take();

    std::mutex mutex_;
    std::condition_variable posted_;
    std::deque<std::function<void()>> blocks_;
};

}  // namespace tavrin
