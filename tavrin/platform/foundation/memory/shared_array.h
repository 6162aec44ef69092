// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>

#include "tavrin/platform/foundation/memory/counted.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"

namespace tavrin {

/// An immutable array in one block of memory, shared between copies; or no array, which is not the same as an empty
/// one. One word; safe to share between threads.
template <class T>
class SharedArray {
public:
    /// No array.
    SharedArray() = default;

    /// An array of `count` values, each made by `make()`, in order. What is made is undone when one of them throws.
    template <class Make>
    [[nodiscard]] static SharedArray generate(std::size_t count, Make make) {
        return SharedArray(Block::create(count, [&](T* values, std::size_t& made) {
            for (; made < count; ++made) ::new (static_cast<void*>(values + made)) T(make());
        }));
    }
    [[nodiscard]] static SharedArray copyOf(std::span<const T> values) {
        return SharedArray(Block::create(values.size(), [&](T* copies, std::size_t& made) {
            std::uninitialized_copy(values.begin(), values.end(), copies);
            made = values.size();
        }));
    }

    [[nodiscard]] bool exists() const { return block_ != nullptr; }
    /// Empty where there is no array.
    [[nodiscard]] std::span<const T> span() const {
        return exists() ? std::span<const T>(block_->values(), block_->size) : std::span<const T>();
    }

private:
    /// How many values there are; they stand behind it.
    struct Block {
        mutable OwnerCount owners = {};
        std::size_t size = 0;

        template <class Fill>
        static const Block* create(std::size_t count, Fill fill) {
            auto* block = ::new (pool::allocate(bytesFor(count))) Block{.size = count};
            std::size_t made = 0;
            try {
                fill(block->values(), made);
            } catch (...) {
                std::destroy_n(block->values(), made);
                pool::deallocate(block, bytesFor(count));
                throw;
            }
            return block;
        }
        // Apart, so that the destructor of the array itself is inline: most arrays do not exist.
        [[gnu::noinline]] static void operator delete(Block* block, std::destroying_delete_t) {
            const std::size_t bytes = bytesFor(block->size);
            std::destroy_n(block->values(), block->size);
            std::destroy_at(block);
            pool::deallocate(block, bytes);
        }

        static constexpr std::size_t bytesFor(std::size_t count) { return sizeof(Block) + count * sizeof(T); }
        T* values() { return std::launder(reinterpret_cast<T*>(this + 1)); }
        const T* values() const { return std::launder(reinterpret_cast<const T*>(this + 1)); }
    };

    explicit SharedArray(const Block* block) : block_(block) { static_assert(alignof(T) <= alignof(Block)); }

    CountedPtr<Block> block_;
};

}  // namespace tavrin
