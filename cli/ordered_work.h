// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin::cli {

/// Work whose results several threads make and the calling one takes in order. Threads run ahead of it only so far that
/// few results wait in memory.
template <class Result>
class OrderedWork {
public:
    OrderedWork(std::size_t count, std::function<Result(std::size_t)> make) : make_(std::move(make)), slots_(count) {
        const std::size_t threads = std::min<std::size_t>(count, std::thread::hardware_concurrency());
        if (threads < 2) return;
        window_ = 4 * threads;
        const BlockedSignals blocked;  // signals are the calling thread's
        try {
            for (std::size_t i = 0; i < threads; ++i) threads_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            // The threads that did start do the work.
        }
    }
    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;
    ~OrderedWork() {
        {
            const std::lock_guard lock(mutex_);
            next_ = slots_.size();
        }
        changed_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }

    [[nodiscard]] bool hasThreads() const { return !threads_.empty(); }

    /// Waits for the next result in order. Passes on what making it threw.
    Result take() {
        std::unique_lock lock(mutex_);
        Slot& slot = slots_[taken_];
        changed_.wait(lock, [&] { return slot.result || slot.error; });
        ++taken_;
        changed_.notify_all();
        if (slot.error) std::rethrow_exception(slot.error);
        Result result = *std::move(slot.result);
        slot.result.reset();
        return result;
    }

private:
    struct Slot {
        std::optional<Result> result;
        std::exception_ptr error;
    };

    void work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [&] { return next_ >= slots_.size() || next_ < taken_ + window_; });
            if (next_ >= slots_.size()) return;
            const std::size_t index = next_++;
            lock.unlock();
            Slot made = makeSlot(index);
            lock.lock();
            slots_[index] = std::move(made);
            changed_.notify_all();
        }
    }

    Slot makeSlot(std::size_t index) {
        try {
            return {make_(index), nullptr};
        } catch (...) {
            return {std::nullopt, std::current_exception()};
        }
    }

    std::function<Result(std::size_t)> make_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Slot> slots_;
    std::size_t window_ = 0;
    std::size_t next_ = 0;
    std::size_t taken_ = 0;
    std::vector<std::thread> threads_;
};

/// Calls `take(i, make(i))` for each i below `count`, in order. Where the machine has more than one thread they call
/// `make`, the calling thread `take`. What either throws ends the work and is passed on.
template <class Result, class Make, class Take>
void inOrder(std::size_t count, Make make, Take take) {
    OrderedWork<Result> work(count, make);
    for (std::size_t i = 0; i < count; ++i) take(i, work.hasThreads() ? work.take() : make(i));
}

}  // namespace tavrin::cli
