#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace tavrin {

/// Small blocks of memory, kept by each thread for the next use. A document and its views are made of many small
/// values that come and go together; the general allocator takes several times as long for them.
namespace pool {

/// Larger blocks come from the general allocator.
inline constexpr std::size_t largestBlock = 512;

[[nodiscard]] void* allocate(std::size_t bytes);
/// Also for a block that another thread allocated.
void deallocate(void* block, std::size_t bytes) noexcept;

}  // namespace pool

/// The standard allocator over those blocks.
template <class T>
struct PoolAllocator {
    using value_type = T;

    PoolAllocator() = default;
    template <class U>
    PoolAllocator(const PoolAllocator<U>&) noexcept {}  // NOLINT(google-explicit-constructor): as allocators do

    [[nodiscard]] T* allocate(std::size_t count) {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        return static_cast<T*>(pool::allocate(count * sizeof(T)));
    }
    void deallocate(T* values, std::size_t count) noexcept { pool::deallocate(values, count * sizeof(T)); }

    friend bool operator==(const PoolAllocator&, const PoolAllocator&) { return true; }
};

/// `std::make_shared` from the pool.
template <class T, class... Arguments>
[[nodiscard]] std::shared_ptr<T> makePooled(Arguments&&... arguments) {
    return std::allocate_shared<T>(PoolAllocator<std::byte>(), std::forward<Arguments>(arguments)...);
}

}  // namespace tavrin
