// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
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

/// Work that the calling thread hands out and whose results, which several threads make, it takes in order. Only so
/// much is handed out ahead that few inputs and results wait in memory, however many there are in all.
template <class Input, class Result>
class OrderedWork {
public:
    /// Works on the machine's threads, but no more than `most`; on the calling one where that is one.
    OrderedWork(std::size_t most, std::function<Result(Input&)> make) : make_(std::move(make)) {
        const std::size_t threads = std::min<std::size_t>(most, std::thread::hardware_concurrency());
        if (threads < 2) return;
        const BlockedSignals blocked;  // signals are the calling thread's
        try {
            for (std::size_t i = 0; i < threads; ++i) threads_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            // The threads that did start do the work.
        }
        window_ = 4 * std::max<std::size_t>(1, threads_.size());
    }
    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;
    ~OrderedWork() {
        {
            const std::lock_guard lock(mutex_);
            ends_ = true;
        }
        handedOut_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }

    /// Whether all that was handed out is taken.
    [[nodiscard]] bool isEmpty() const { return slots_.empty(); }
    /// Whether more may be handed out before something is taken.
    [[nodiscard]] bool hasRoom() const { return slots_.size() < window_; }

    void put(Input input) {
        {
            const std::lock_guard lock(mutex_);
            slots_.push_back({std::move(input), std::nullopt, nullptr});
        }
        handedOut_.notify_one();
    }

    /// Waits for the oldest result, of which there must be one. Passes on what making it threw.
    Result take() {
        std::unique_lock lock(mutex_);
        if (threads_.empty()) fill(slots_.front());
        made_.wait(lock, [&] { return slots_.front().result || slots_.front().error; });
        Slot slot = std::move(slots_.front());
        slots_.pop_front();
        if (begun_ > 0) --begun_;
        if (slot.error) std::rethrow_exception(slot.error);
        return *std::move(slot.result);
    }

private:
    struct Slot {
        Input input;
        std::optional<Result> result;
        std::exception_ptr error;
    };

    void work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            handedOut_.wait(lock, [&] { return ends_ || begun_ < slots_.size(); });
            if (ends_) return;
            Slot& slot = slots_[begun_++];  // which stays where it is until it is taken
            lock.unlock();
            Slot made{std::move(slot.input), std::nullopt, nullptr};
            fill(made);
            lock.lock();
            slot = std::move(made);
            made_.notify_one();
        }
    }

    void fill(Slot& slot) {
        try {
            slot.result = make_(slot.input);
        } catch (...) {
            slot.error = std::current_exception();
        }
    }

    std::function<Result(Input&)> make_;
    std::mutex mutex_;
    std::condition_variable handedOut_;
    std::condition_variable made_;
    std::deque<Slot> slots_;  // in order, from the oldest that is not taken
    std::size_t begun_ = 0;   // so many of them threads have begun with
    std::size_t window_ = 1;
    bool ends_ = false;
    std::vector<std::thread> threads_;
};

/// Calls `take(make(input))` for each input that `next()` gives until it gives none, in order. Where the machine has
/// more than one thread they call `make`, the calling thread the others. While `isReady()` says that the next input
/// would have to be waited for, what is made is taken. What any of them throws ends the work and is passed on.
template <class Input, class Result, class Next, class IsReady, class Make, class Take>
void inOrder(Next next, IsReady isReady, Make make, Take take,
             std::size_t mostThreads = std::thread::hardware_concurrency()) {
    OrderedWork<Input, Result> work(mostThreads, make);
    for (bool isOver = false;;) {
        while (!isOver && work.hasRoom() && (work.isEmpty() || isReady())) {
            std::optional<Input> input = next();
            isOver = !input;
            if (input) work.put(*std::move(input));
        }
        if (work.isEmpty()) return;
        take(work.take());
    }
}

/// Calls `take(i, make(i))` for each i below `count` in this way.
template <class Result, class Make, class Take>
void inOrder(std::size_t count, Make make, Take take) {
    std::size_t handedOut = 0;
    std::size_t taken = 0;
    inOrder<std::size_t, Result>([&] { return handedOut < count ? std::optional(handedOut++) : std::nullopt; },
                                 [] { return true; }, [&](std::size_t index) { return make(index); },
                                 [&](Result result) { take(taken++, std::move(result)); }, count);
}

}  // namespace tavrin::cli
