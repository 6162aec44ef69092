// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/budget/metering.h"

#include <algorithm>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

/// How much may be done between two looks at the clock: well under a millisecond, mostly.
constexpr std::uint64_t stepsBetween = 4096;
constexpr std::uint64_t pixelsBetween = 1U << 18;
/// How exactly the most bytes held at once are known.
constexpr std::int64_t bytesBetween = 1 << 16;

constinit thread_local Metering* innermost = nullptr;

[[noreturn]] void fail(std::string message) { throw TavrinError("Budget", std::move(message)); }

std::uint64_t sum(std::uint64_t a, std::uint64_t b) { return a > UINT64_MAX - b ? UINT64_MAX : a + b; }

/// `seconds` from now on; none for so many that no clock counts them.
std::optional<Metering::Clock::time_point> after(double seconds) {
    constexpr double century = 3.2e9;
    if (!(seconds < century)) return std::nullopt;
    const std::chrono::duration<double> wait(std::max(0.0, seconds));
    return Metering::Clock::now() + std::chrono::duration_cast<Metering::Clock::duration>(wait);
}

}  // namespace

constinit thread_local Meter threadMeter{};

void Meter::look() {
    if (innermost)
        innermost->check();
    else
        stepsToLook = pixelsToLook = UINT64_MAX;
}

void Meter::lookAtBytes(std::size_t added) {
    if (innermost && !innermost->coversBytes()) {
        release(added);
        fail(fmt::format("more than {} bytes are held at once", innermost->budget().bytes));
    }
    bytesToLook = innermost ? innermost->nextBytes() : INT64_MAX;
}

Metering::Metering(const RenderBudget& budget, Cost& cost, std::shared_ptr<SharedBytes> shared)
    : budget_(budget),
      cost_(cost),
      shared_(std::move(shared)),
      outer_(std::exchange(threadMeter, Meter{.steps = cost.steps, .pixels = cost.pixels, .bytes = cost.bytes})),
      outerMetering_(std::exchange(innermost, this)) {
    if (budget_.seconds) end_ = after(*budget_.seconds - cost.seconds);
    if (outerMetering_ && outerMetering_->end_ && (!end_ || *outerMetering_->end_ < *end_)) {
        end_ = outerMetering_->end_;
        budget_.seconds = outerMetering_->budget_.seconds;
    }
    // The first step looks: it may be too late, or cancelled.
    threadMeter.stepsToLook = end_ || budget_.cancel ? 0 : budget_.steps;
    threadMeter.pixelsToLook = std::min(budget_.pixels, sum(cost.pixels, pixelsBetween));
    threadMeter.bytesToLook =
        shared_ ? cost.bytes : std::min(allowedBytes(), std::max(cost.peakBytes, cost.bytes + bytesBetween));
}

Metering::~Metering() {
    if (shared_) shared_->giveBack(bytesLeft());
    cost_ = spent();
    threadMeter = outer_;
    innermost = outerMetering_;
}

std::int64_t Metering::allowedBytes() const {
    if (shared_) return cost_.bytes + taken_;
    return static_cast<std::int64_t>(std::min<std::uint64_t>(budget_.bytes, INT64_MAX));
}

bool Metering::coversBytes() {
    const std::int64_t missing = threadMeter.bytes - allowedBytes();
    if (missing <= 0) return true;
    if (!shared_) return false;
    if (!shared_->take(static_cast<std::size_t>(missing))) {
        isShort_ = true;
        return false;
    }
    taken_ += missing;
    return true;
}

std::int64_t Metering::nextBytes() const {
    return shared_ ? threadMeter.bytes : std::min(allowedBytes(), threadMeter.bytes + bytesBetween);
}

Metering* Metering::ofThisThread() { return innermost; }

void Metering::check() {
    if (threadMeter.steps > budget_.steps) fail(fmt::format("the work takes more than {} steps", budget_.steps));
    if (threadMeter.pixels > budget_.pixels) fail(fmt::format("more than {} pixels are painted", budget_.pixels));
    if (budget_.cancel && budget_.cancel->isCancelled()) fail("the call was cancelled");
    if (end_ && Clock::now() >= *end_) fail(fmt::format("it takes more than {} seconds", *budget_.seconds));
    lookAgainLater();
}

void Metering::lookAgainLater() const {
    const bool looksOften = end_ || budget_.cancel;
    const std::uint64_t steps = looksOften ? sum(threadMeter.steps, stepsBetween) : UINT64_MAX;
    const std::uint64_t pixels = looksOften ? sum(threadMeter.pixels, pixelsBetween) : UINT64_MAX;
    threadMeter.stepsToLook = std::min(budget_.steps, steps);
    threadMeter.pixelsToLook = std::min(budget_.pixels, pixels);
}

Cost Metering::spent() const {
    const std::chrono::duration<double> passed = Clock::now() - begin_;
    return {threadMeter.steps, threadMeter.pixels, threadMeter.bytes, threadMeter.bytesToLook,
            cost_.seconds + passed.count()};
}

std::size_t Metering::bytesLeft() const {
    const std::int64_t allowed = allowedBytes();
    if (threadMeter.bytes >= allowed) return 0;
    const std::size_t left = static_cast<std::size_t>(allowed) - static_cast<std::size_t>(threadMeter.bytes);
    // What had been held before and was given back here was never shared.
    return shared_ ? std::min(left, static_cast<std::size_t>(taken_)) : left;
}

void Metering::takeOver(TakenBytes& taken) {
    if (shared_ && taken.areOf(*shared_)) taken_ += static_cast<std::int64_t>(taken.handOver());
}

void Metering::charge(const Cost& cost) {
    threadMeter.step(cost.steps);
    threadMeter.paint(cost.pixels);
    const std::int64_t held = std::max<std::int64_t>(0, cost.bytes);
    const std::int64_t most = std::max(held, cost.peakBytes);
    threadMeter.hold(static_cast<std::size_t>(most));
    threadMeter.release(static_cast<std::size_t>(most - held));
}

}  // namespace tavrin
