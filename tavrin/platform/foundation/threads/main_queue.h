// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace tavrin {

/// Blocks that any thread posts and one thread runs, in their order: the host's own, whenever it calls `runPending` or
/// `runFor`. Nothing runs by itself; what no one runs stays in the queue. Posting is thread-safe.
class MainQueue {
public:
    /// The process's queue, on which prefetches report that they are complete. Never destroyed.
    static MainQueue& shared();

    MainQueue();
    ~MainQueue();
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
    struct Blocks;
    std::unique_ptr<Blocks> blocks_;
};

}  // namespace tavrin
