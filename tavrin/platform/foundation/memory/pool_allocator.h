// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"

/// Small blocks of memory, kept by each thread for the next use. A document and its views are made of many small values
/// that come and go together; the general allocator takes several times as long for them. All of it, larger blocks as
/// well, counts as held by the thread that allocates it.
namespace tavrin::pool {

/// Larger blocks come from the general allocator.
inline constexpr std::size_t largestBlock = 512;

[[nodiscard]] inline void* allocate(std::size_t bytes);
/// Also for a block that another thread allocated.
inline void deallocate(void* block, std::size_t bytes) noexcept;

// What follows is only for those two, which are used in so many places that they must be inline.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool keepsBlocks = false;  // so that the sanitizers see every block come and go
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool keepsBlocks = false;
#else
inline constexpr bool keepsBlocks = true;
#endif
#else
inline constexpr bool keepsBlocks = true;
#endif

inline constexpr std::size_t step = 16;
inline constexpr std::size_t classCount = largestBlock / step;

/// A free block; its own memory links it to the next one of its size.
struct FreeBlock {
    FreeBlock* next;
};

struct FreeBlocks {
    std::array<FreeBlock*, classCount> first{};  // a list for each size
    std::size_t room = 0;  // how many more bytes are kept; none before the thread's first block and after its end
};

// Plain data, so that a value that outlives the thread's other locals still finds it.
extern constinit thread_local FreeBlocks freeBlocks;

constexpr std::size_t classOf(std::size_t bytes) { return bytes == 0 ? 0 : (bytes - 1) / step; }
constexpr std::size_t classSize(std::size_t index) { return (index + 1) * step; }

/// A block of `size` from the general allocator, for which `held` bytes have been counted.
[[nodiscard]] void* allocateAnew(std::size_t size, std::size_t held);
/// Opens the thread's lists or, when they are full or closed, frees the block.
void giveBackWithoutRoom(void* block, std::size_t bytes) noexcept;

inline void* allocate(std::size_t bytes) {
    Meter::ofThisThread().hold(bytes);
    if (!keepsBlocks || bytes > largestBlock) return allocateAnew(bytes, bytes);
    const std::size_t index = classOf(bytes);
    FreeBlock*& first = freeBlocks.first[index];
    if (first == nullptr) return allocateAnew(classSize(index), bytes);
    freeBlocks.room += classSize(index);
    return std::exchange(first, first->next);
}

inline void giveBack(void* block, std::size_t bytes) noexcept {
    if (!keepsBlocks || bytes > largestBlock) return ::operator delete(block);
    const std::size_t index = classOf(bytes);
    if (freeBlocks.room < classSize(index)) return giveBackWithoutRoom(block, bytes);
    freeBlocks.room -= classSize(index);
    freeBlocks.first[index] = ::new (block) FreeBlock{freeBlocks.first[index]};
}

inline void deallocate(void* block, std::size_t bytes) noexcept {
    Meter::ofThisThread().release(bytes);
    giveBack(block, bytes);
}

/// Makes `new` and `delete` of a class and those derived from it use the pool.
struct Pooled {
    static void* operator new(std::size_t bytes) { return allocate(bytes); }
    static void operator delete(void* block, std::size_t bytes) { deallocate(block, bytes); }
};

/// The pool for standard containers.
template <class T>
struct Allocator {
    using value_type = T;

    Allocator() = default;
    template <class Other>
    Allocator(const Allocator<Other>&) {}  // NOLINT(google-explicit-constructor): as the standard asks

    [[nodiscard]] T* allocate(std::size_t count) {
        static_assert(alignof(T) <= step);
        return static_cast<T*>(pool::allocate(count * size));
    }
    void deallocate(T* block, std::size_t count) noexcept { pool::deallocate(block, count * size); }

    friend bool operator==(const Allocator&, const Allocator&) { return true; }

private:
    static constexpr std::size_t size = sizeof(T);  // NOLINT(bugprone-sizeof-expression): pointers, too
};

/// What a document can make long.
template <class T>
using Vector = std::vector<T, Allocator<T>>;

}  // namespace tavrin::pool
