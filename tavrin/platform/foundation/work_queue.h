#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tavrin {

/// Blocks that a few threads of its own run; urgent ones first, else in their order. Threads start when there is work
/// for them. Thread-safe.
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

    const std::size_t maximumThreads_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> urgent_;
    std::deque<std::function<void()>> others_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool finishing_ = false;
};

}  // namespace tavrin
