#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/counted.h"
#include "tavrin/platform/foundation/pool_allocator.h"

namespace tavrin {

/// An immutable text in one word, shared between copies; or no text, which is not the same as an empty one.
class SharedText {
public:
    SharedText() = default;
    explicit SharedText(std::string_view text)
        : block_(::new (pool::allocate(sizeof(Block) + text.size())) Block{{}, text.size()}) {
        if (!text.empty()) std::memcpy(static_cast<void*>(block_ + 1), text.data(), text.size());
    }
    SharedText(const SharedText& other) noexcept : block_(other.block_) {
        if (block_ != nullptr) block_->owners.add();
    }
    SharedText(SharedText&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
    SharedText& operator=(SharedText other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }
    ~SharedText() {
        if (block_ != nullptr && block_->owners.remove()) destroy(block_);
    }

    [[nodiscard]] bool exists() const { return block_ != nullptr; }
    /// Empty where there is no text.
    [[nodiscard]] std::string_view view() const {
        return block_ == nullptr ? std::string_view()
                                 : std::string_view(reinterpret_cast<const char*>(block_ + 1), block_->size);
    }

private:
    struct Block {
        OwnerCount owners;
        std::size_t size;
    };

    // Apart, so that the destructor itself is inline: most properties have no expression.
    [[gnu::noinline]] static void destroy(Block* block) noexcept {
        const std::size_t bytes = sizeof(Block) + block->size;
        std::destroy_at(block);
        pool::deallocate(block, bytes);
    }

    Block* block_ = nullptr;
};

}  // namespace tavrin
