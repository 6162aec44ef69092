// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/memory/pool_allocator.h"

namespace tavrin::pool {
namespace {

// On each thread: room for all that a document of 100,000 nodes leaves behind. Giving so many small blocks back to the
// general allocator, and asking for them again, takes longer than decoding them.
constexpr std::size_t keptBytes = 64 * 1024 * 1024;

constinit thread_local bool isOpen = false;

/// Gives the thread's blocks back when it ends; there is no room from then on.
struct Janitor {
    Janitor() {
        isOpen = true;
        freeBlocks.room = keptBytes;
    }
    ~Janitor() {
        freeBlocks.room = 0;
        for (FreeBlock*& first : freeBlocks.first)
            while (first != nullptr) ::operator delete(std::exchange(first, first->next));
    }
};

void open() { thread_local const Janitor janitor; }

}  // namespace

constinit thread_local FreeBlocks freeBlocks{};

void* allocateAnew(std::size_t size, std::size_t held) {
    try {
        return ::operator new(size);
    } catch (...) {
        Meter::ofThisThread().release(held);
        throw;
    }
}

void giveBackWithoutRoom(void* block, std::size_t bytes) noexcept {
    if (isOpen) return ::operator delete(block);
    open();
    giveBack(block, bytes);
}

}  // namespace tavrin::pool
