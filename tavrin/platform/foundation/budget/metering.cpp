// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/budget/metering.h"

#include <algorithm>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

/// How much may be done between two looks at the clock: well under a millisecond, mostly.
constexpr std::uint64_t stepsBetween = 4096;
constexpr std::uint64_t pixelsBetween = 1U << 18;

constinit thread_local Metering* innermost = nullptr;

[[noreturn]] void fail(std::string message) { throw TavrinError("Budget", std::move(message)); }

std::int64_t asSigned(std::uint64_t bytes) {
    return static_cast<std::int64_t>(std::min<std::uint64_t>(bytes, INT64_MAX));
}

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

void Meter::refuse(std::size_t count) {
    release(count);
    fail(fmt::format("more than {} bytes are held at once", bytesAllowed));
}

Metering::Metering(const RenderBudget& budget, Cost& cost)
    : budget_(budget),
      cost_(cost),
      outer_(std::exchange(threadMeter, Meter{.steps = cost.steps,
                                              .pixels = cost.pixels,
                                              .bytes = cost.bytes,
                                              .bytesAllowed = asSigned(budget.bytes)})),
      outerMetering_(std::exchange(innermost, this)) {
    if (budget_.seconds) end_ = after(*budget_.seconds - cost.seconds);
    // The first step looks: it may be too late, or cancelled.
    threadMeter.stepsToLook = end_ || budget_.cancel ? 0 : budget_.steps;
    threadMeter.pixelsToLook = std::min(budget_.pixels, sum(cost.pixels, pixelsBetween));
}

Metering::~Metering() {
    cost_ = spent();
    threadMeter = outer_;
    innermost = outerMetering_;
}

Metering* Metering::ofThisThread() { return innermost; }

void Metering::check() {
    if (threadMeter.steps > budget_.steps) fail(fmt::format("the work takes more than {} steps", budget_.steps));
    if (threadMeter.pixels > budget_.pixels) fail(fmt::format("more than {} pixels are painted", budget_.pixels));
    if (budget_.cancel && budget_.cancel->isCancelled()) fail("the call was cancelled");
    if (end_ && Clock::now() >= *end_) fail("it takes more than " + toText(*budget_.seconds) + " seconds");
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
    return {threadMeter.steps, threadMeter.pixels, threadMeter.bytes, cost_.seconds + passed.count()};
}

RenderBudget Metering::rest() const {
    RenderBudget rest = budget_;
    rest.steps -= std::min(rest.steps, threadMeter.steps);
    rest.pixels -= std::min(rest.pixels, threadMeter.pixels);
    rest.bytes = static_cast<std::uint64_t>(std::max<std::int64_t>(0, threadMeter.bytesAllowed - threadMeter.bytes));
    if (end_) rest.seconds = std::chrono::duration<double>(*end_ - Clock::now()).count();
    return rest;
}

void Metering::charge(const Cost& cost) {
    threadMeter.step(cost.steps);
    threadMeter.paint(cost.pixels);
    threadMeter.hold(static_cast<std::size_t>(std::max<std::int64_t>(0, cost.bytes)));
}

}  // namespace tavrin
