// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavrin {

/// What the call that runs on a thread has cost so far. Whatever works by a document's will counts here before it
/// works; where a `Metering` says how much there is, what passes that throws `TavrinError` of kind "Budget". Plain
/// data, so that counting is an addition and a comparison.
struct Meter {
    /// The calling thread's.
    static Meter& ofThisThread();

    void step(std::uint64_t count = 1) {
        steps += count;
        if (steps > stepsToLook) [[unlikely]]
            look();
    }
    void paint(std::uint64_t count) {
        pixels += count;
        if (pixels > pixelsToLook) [[unlikely]]
            look();
    }
    /// Counts bytes until they are released.
    void hold(std::size_t count) {
        bytes += static_cast<std::int64_t>(count);
        if (bytes > bytesToLook) [[unlikely]]
            lookAtBytes(count);
    }
    void release(std::size_t count) noexcept { bytes -= static_cast<std::int64_t>(count); }

    std::uint64_t steps = 0;
    std::uint64_t stepsToLook = UINT64_MAX;  ///< when to look at the budget and the clock
    std::uint64_t pixels = 0;
    std::uint64_t pixelsToLook = UINT64_MAX;
    std::int64_t bytes = 0;  ///< below 0 where what was allocated before is given back
    std::int64_t bytesToLook = INT64_MAX;

private:
    void look();
    void lookAtBytes(std::size_t added);
};

extern constinit thread_local Meter threadMeter;

inline Meter& Meter::ofThisThread() { return threadMeter; }

/// Holds bytes as long as it lives.
class HeldBytes {
public:
    HeldBytes() = default;
    explicit HeldBytes(std::size_t count) { grow(count); }
    HeldBytes(HeldBytes&& other) noexcept : count_(other.count_) { other.count_ = 0; }
    HeldBytes& operator=(HeldBytes&& other) noexcept {
        const std::size_t taken = other.count_;
        other.count_ = 0;
        Meter::ofThisThread().release(count_);
        count_ = taken;
        return *this;
    }
    HeldBytes(const HeldBytes&) = delete;
    HeldBytes& operator=(const HeldBytes&) = delete;
    ~HeldBytes() { Meter::ofThisThread().release(count_); }

    void grow(std::size_t count) {
        Meter::ofThisThread().hold(count);
        count_ += count;
    }

private:
    std::size_t count_ = 0;
};

}  // namespace tavrin
