#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "tavrin/platform/foundation/counted.h"
#include "tavrin/platform/foundation/pool_allocator.h"

namespace tavrin {

/// An immutable list in one block of memory, shared between copies. An empty list has none.
template <class T>
class SharedList {
public:
    SharedList() = default;
    SharedList(const SharedList& other) noexcept : block_(other.block_) {
        if (block_ != nullptr) block_->owners.add();
    }
    SharedList(SharedList&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    SharedList& operator=(SharedList other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~SharedList() {
        if (block_ != nullptr && block_->owners.remove()) destroy(block_);
    }

    /// A list of `count` values, each made by `make()`, in order. What is made is undone when one of them throws.
    template <class Make>
    static SharedList generate(std::size_t count, Make make) {
        SharedList list;
        if (count == 0) return list;
        list.block_ = ::new (pool::allocate(bytesFor(count))) Block{{}, 0, count};
        for (T* place = values(list.block_); list.block_->size < count; ++place, ++list.block_->size)
            ::new (static_cast<void*>(place)) T(make());
        return list;
    }

    [[nodiscard]] std::span<const T> span() const {
        return block_ == nullptr ? std::span<const T>() : std::span<const T>(values(block_), block_->size);
    }

private:
    struct Block {
        OwnerCount owners;
        std::size_t size;
        std::size_t capacity;
    };
    static_assert(alignof(T) <= alignof(Block));

    static constexpr std::size_t bytesFor(std::size_t count) { return sizeof(Block) + count * sizeof(T); }
    static T* values(Block* block) { return std::launder(reinterpret_cast<T*>(block + 1)); }

    // Apart, so that the destructor itself is inline: most lists are empty.
    [[gnu::noinline]] static void destroy(Block* block) noexcept {
        std::destroy_n(values(block), block->size);
        const std::size_t bytes = bytesFor(block->capacity);
        std::destroy_at(block);
        pool::deallocate(block, bytes);
    }

    Block* block_ = nullptr;
};

}  // namespace tavrin
