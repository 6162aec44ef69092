#include "tavrin/platform/foundation/pool_allocator.h"

#include <array>

namespace tavrin::pool {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool keepsBlocks = false;  // so that the sanitizers see every block come and go
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool keepsBlocks = false;
#else
constexpr bool keepsBlocks = true;
#endif
#else
constexpr bool keepsBlocks = true;
#endif

constexpr std::size_t step = 16;
constexpr std::size_t classCount = largestBlock / step;
constexpr std::size_t keptBytes = 256 * 1024;  // for each size, on each thread

/// A free block; its own memory links it to the next one of its size.
struct FreeBlock {
    FreeBlock* next;
};

struct FreeList {
    FreeBlock* first = nullptr;
    std::size_t length = 0;
};

// Plain data, so that a value that outlives the thread's other locals still finds it.
constinit thread_local std::array<FreeList, classCount> freeLists{};
constinit thread_local bool closed = false;

/// Gives the thread's blocks back when it ends.
struct Janitor {
    ~Janitor() {
        closed = true;
        for (FreeList& list : freeLists) {
            while (list.first != nullptr) ::operator delete(std::exchange(list.first, list.first->next));
            list.length = 0;
        }
    }
};

constexpr std::size_t classOf(std::size_t bytes) { return bytes == 0 ? 0 : (bytes - 1) / step; }

void hireJanitor() { thread_local const Janitor janitor; }

}  // namespace

void* allocate(std::size_t bytes) {
    if (!keepsBlocks || bytes > largestBlock) return ::operator new(bytes);
    FreeList& list = freeLists[classOf(bytes)];
    if (list.first == nullptr) return ::operator new((classOf(bytes) + 1) * step);
    --list.length;
    return std::exchange(list.first, list.first->next);
}

void deallocate(void* block, std::size_t bytes) noexcept {
    if (!keepsBlocks || bytes > largestBlock || closed) return ::operator delete(block);
    const std::size_t index = classOf(bytes);
    FreeList& list = freeLists[index];
    if (list.length * (index + 1) * step >= keptBytes) return ::operator delete(block);
    if (list.length == 0) hireJanitor();
    list.first = ::new (block) FreeBlock{list.first};
    ++list.length;
}

}  // namespace tavrin::pool
