// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/threads/work_queue.h"

#include <system_error>
#include <utility>

#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin {

void WorkQueue::post(std::function<void()> block, bool isUrgent) {
    std::unique_lock lock(mutex_);
    if (!finishing_ && idle_ <= urgent_.size() + others_.size() && threads_.size() < maximumThreads_) {
        const BlockedSignals blocked;  // signals are the host's
        try {
            threads_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            // Those that did start do the work.
        }
    }
    if (threads_.empty()) {
        lock.unlock();
        return block();
    }
    (isUrgent ? urgent_ : others_).push_back(std::move(block));
    changed_.notify_one();
}

void WorkQueue::finish() {
    std::vector<std::thread> threads;
    {
        const std::lock_guard lock(mutex_);
        finishing_ = true;
        threads.swap(threads_);
    }
    changed_.notify_all();
    for (std::thread& thread : threads) thread.join();
}

void WorkQueue::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        ++idle_;
        changed_.wait(lock, [this] { return !urgent_.empty() || (others_.empty() ? finishing_ : hasRoomForOthers()); });
        --idle_;
        const bool isUrgent = !urgent_.empty();
        std::deque<std::function<void()>>& next = isUrgent ? urgent_ : others_;
        if (next.empty()) return;
        std::function<void()> block = std::move(next.front());
        next.pop_front();
        if (!isUrgent) ++othersRunning_;
        lock.unlock();
        block();
        block = nullptr;  // what it holds ends outside the lock
        lock.lock();
        if (isUrgent) continue;
        --othersRunning_;
        if (!others_.empty()) changed_.notify_one();  // this thread may have something urgent to do first
    }
}

}  // namespace tavrin
