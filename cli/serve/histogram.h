// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace tavrin::cli {

/// Counts how long things took. Any number of threads may count at once, without waiting for each other.
class Histogram {
public:
    /// The upper ends of its buckets, in seconds; above the last there is one more.
    static constexpr std::array bounds{0.0005, 0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                       0.1,    0.25,  0.5,    1.0,   2.5,  5.0,   10.0};

    /// Negative numbers and those that are none count as 0.
    void count(double seconds) {
        const double taken = seconds > 0 ? std::min(seconds, mostSeconds) : 0;
        const auto* const bucket = std::ranges::lower_bound(bounds, taken);
        nanoseconds_.fetch_add(static_cast<std::uint64_t>(std::llround(taken * 1e9)), std::memory_order_relaxed);
        buckets_[static_cast<std::size_t>(bucket - bounds.begin())].fetch_add(1, std::memory_order_relaxed);
    }

    /// How many there are in each bucket alone.
    [[nodiscard]] std::array<std::uint64_t, bounds.size() + 1> buckets() const {
        std::array<std::uint64_t, bounds.size() + 1> counts{};
        for (std::size_t i = 0; i < counts.size(); ++i) counts[i] = buckets_[i].load(std::memory_order_relaxed);
        return counts;
    }
    /// All of them together.
    [[nodiscard]] double seconds() const {
        return static_cast<double>(nanoseconds_.load(std::memory_order_relaxed)) / 1e9;
    }

private:
    static constexpr double mostSeconds = 1e6;

    std::array<std::atomic<std::uint64_t>, bounds.size() + 1> buckets_{};
    std::atomic<std::uint64_t> nanoseconds_ = 0;
};

}  // namespace tavrin::cli
