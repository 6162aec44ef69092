// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/memory/fresh_memory.h"

#include <atomic>
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace tavrin {

void takeAtOnce(void* memory, std::size_t bytes) {
    constexpr std::size_t notWorthACall = std::size_t{64} << 10;
    constexpr int firstPictures = 16;
    static std::atomic<int> calls = 0;
    if (bytes < notWorthACall || calls.load(std::memory_order_relaxed) >= firstPictures) return;
    calls.fetch_add(1, std::memory_order_relaxed);
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
    const std::size_t pages = (bytes - before) / page;
    // Where the kernel cannot do it, the pages come one by one.
    static_cast<void>(::madvise(static_cast<char*>(memory) + before, pages * page, MADV_POPULATE_WRITE));
}

}  // namespace tavrin
