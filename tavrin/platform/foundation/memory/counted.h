// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <sys/single_threaded.h>
#include <utility>

namespace tavrin {

/// How many owners a shared value has; begins with one. Counted as `std::shared_ptr` counts, from any thread.
class OwnerCount {
public:
    void add() noexcept {
        if (__libc_single_threaded) return count_.store(known() + 1, std::memory_order_relaxed);
        count_.fetch_add(1, std::memory_order_relaxed);
    }
    /// Whether it was the last owner that went.
    [[nodiscard]] bool remove() noexcept {
        // A sole owner meets nobody else: no locked operation is needed.
        if (isSole()) return true;
        if (!__libc_single_threaded) return count_.fetch_sub(1, std::memory_order_acq_rel) == 1;
        count_.store(known() - 1, std::memory_order_relaxed);
        return false;
    }

    /// Whether there is but one owner; then there is none on any other thread.
    [[nodiscard]] bool isSole() const noexcept { return count_.load(std::memory_order_acquire) == 1; }

private:
    [[nodiscard]] std::uint32_t known() const { return count_.load(std::memory_order_relaxed); }

    std::atomic<std::uint32_t> count_{1};
};

/// What `CountedPtr` points to: a class that can be deleted through it, which its last owner does.
struct Counted {
    mutable OwnerCount owners = {};
};

/// A shared pointer of one word to an immutable value that carries its own count in `owners`.
template <class T>
class CountedPtr {
public:
    /// No value.
    CountedPtr() = default;
    /// Takes a new value over.
    explicit CountedPtr(const T* value) noexcept : value_(value) {}
    CountedPtr(const CountedPtr& other) noexcept : value_(other.value_) {
        if (value_ != nullptr) value_->owners.add();
    }
    CountedPtr(CountedPtr&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
    CountedPtr& operator=(CountedPtr other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    // Inline everywhere: most of a record's pointers are null.
    [[gnu::always_inline]] ~CountedPtr() {
        if (value_ != nullptr && value_->owners.remove()) delete value_;
    }

    const T& operator*() const { return *value_; }
    const T* operator->() const { return value_; }
    friend bool operator==(const CountedPtr&, const CountedPtr&) = default;
    friend bool operator==(const CountedPtr& pointer, std::nullptr_t) { return pointer.value_ == nullptr; }

private:
    const T* value_ = nullptr;
};

}  // namespace tavrin
