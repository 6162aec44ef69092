// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/threads/parallel_loop.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin {

void parallelLoop(std::size_t count, std::size_t maximumThreads, const std::function<void(std::size_t)>& work) {
    std::vector<std::exception_ptr> errors(count);
    std::atomic<std::size_t> next = 0;
    const auto share = [&] {
        for (std::size_t index = next++; index < count; index = next++) {
            try {
                work(index);
            } catch (...) {
                errors[index] = std::current_exception();
            }
        }
    };
    std::vector<std::jthread> threads;  // which are waited for at the end, whatever happens
    try {
        const BlockedSignals blocked;  // signals are the host's
        const std::size_t others = std::max<std::size_t>(1, std::min(count, maximumThreads)) - 1;
        threads.reserve(others);
        while (threads.size() < others) threads.emplace_back(share);
    } catch (const std::system_error&) {
        // Those that did start, and this one, do the work.
    }
    share();
    threads.clear();
    for (const std::exception_ptr& error : errors)
        if (error) std::rethrow_exception(error);
}

}  // namespace tavrin
