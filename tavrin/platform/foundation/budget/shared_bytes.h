// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <utility>

namespace tavrin {

/// Bytes that several threads working for one call may hold together. Thread-safe.
class SharedBytes {
public:
    explicit SharedBytes(std::size_t count) : left_(count) {}

    /// Takes all of `count`, or nothing where fewer are left.
    [[nodiscard]] bool take(std::size_t count) {
        std::size_t left = left_.load(std::memory_order_relaxed);
        while (count <= left)
            if (left_.compare_exchange_weak(left, left - count, std::memory_order_relaxed)) return true;
        return false;
    }
    void giveBack(std::size_t count) { left_.fetch_add(count, std::memory_order_relaxed); }
    [[nodiscard]] std::size_t left() const { return left_.load(std::memory_order_relaxed); }

private:
    std::atomic<std::size_t> left_;
};

/// Shared bytes that were taken for something that another thread will hold: given back unless that thread takes them
/// over.
class TakenBytes {
public:
    TakenBytes() = default;
    /// `count` bytes that were taken of `shared`.
    TakenBytes(std::shared_ptr<SharedBytes> shared, std::size_t count) : shared_(std::move(shared)), count_(count) {}
    TakenBytes(TakenBytes&& other) noexcept : shared_(std::move(other.shared_)), count_(other.handOver()) {}
    TakenBytes& operator=(TakenBytes&& other) noexcept {
        std::swap(shared_, other.shared_);
        std::swap(count_, other.count_);
        return *this;
    }
    TakenBytes(const TakenBytes&) = delete;
    TakenBytes& operator=(const TakenBytes&) = delete;
    ~TakenBytes() {
        if (count_ > 0) shared_->giveBack(count_);
    }

    [[nodiscard]] bool areOf(const SharedBytes& shared) const { return count_ > 0 && shared_.get() == &shared; }
    /// How many there are; from now on they are the caller's.
    std::size_t handOver() noexcept { return std::exchange(count_, 0); }

private:
    std::shared_ptr<SharedBytes> shared_;
    std::size_t count_ = 0;
};

}  // namespace tavrin
