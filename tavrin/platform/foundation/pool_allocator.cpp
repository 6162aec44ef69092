#include "tavrin/platform/foundation/pool_allocator.h"

namespace tavrin::pool {
namespace {

// For each size, on each thread: room for all that a document of 100,000 nodes leaves behind. Giving so many small
// blocks back to the general allocator, and asking for them again, takes longer than decoding them.
constexpr std::size_t keptBytes = 32 * 1024 * 1024;

constinit thread_local bool isOpen = false;

/// Gives the thread's blocks back when it ends; the lists have no room from then on.
struct Janitor {
    Janitor() {
        isOpen = true;
        for (std::size_t index = 0; index < classCount; ++index)
            freeLists[index].room = keptBytes / ((index + 1) * step);
    }
    ~Janitor() {
        for (FreeList& list : freeLists) {
            while (list.first != nullptr) ::operator delete(std::exchange(list.first, list.first->next));
            list.room = 0;
        }
    }
};

void open() { thread_local const Janitor janitor; }

}  // namespace

constinit thread_local std::array<FreeList, classCount> freeLists{};

void deallocateWithoutRoom(void* block, std::size_t bytes) noexcept {
    if (isOpen) return ::operator delete(block);
    open();
    deallocate(block, bytes);
}

}  // namespace tavrin::pool
