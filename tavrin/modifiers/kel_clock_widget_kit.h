// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/ui/view_modifiers.h"

/// Clock hands as hosts know them, apart from the language.
namespace tavrin::KelClockWidgetKit {

/// How long a hand takes for a full turn: an hour, minute or second hand, or so many seconds.
class ClockHandRotationPeriod {
public:
    enum class Case : unsigned char { custom, hour, minute, second };

    static constexpr ClockHandRotationPeriod custom(double seconds) { return {Case::custom, seconds}; }
    static const ClockHandRotationPeriod hour;
    static const ClockHandRotationPeriod minute;
    static const ClockHandRotationPeriod second;

    [[nodiscard]] constexpr Case which() const { return which_; }
    /// Of a custom period; 0 of the others.
    [[nodiscard]] constexpr double customSeconds() const { return seconds_; }

    friend bool operator==(const ClockHandRotationPeriod&, const ClockHandRotationPeriod&) = default;

private:
    constexpr ClockHandRotationPeriod(Case which, double seconds) : which_(which), seconds_(seconds) {}

    Case which_;
    double seconds_;
};

inline constexpr ClockHandRotationPeriod ClockHandRotationPeriod::hour{Case::hour, 0};
inline constexpr ClockHandRotationPeriod ClockHandRotationPeriod::minute{Case::minute, 0};
inline constexpr ClockHandRotationPeriod ClockHandRotationPeriod::second{Case::second, 0};

/// Makes a view turn like a clock's hand in a time zone, around an anchor.
struct ClockHandRotationModifier {
    ClockHandRotationPeriod period;
    TimeZone timeZone;
    UnitPoint anchor;

    [[nodiscard]] AnyView body(AnyView content) const;
};

/// The view in a `ClockHandRotationModifier` of these values.
[[nodiscard]] AnyView clockHandRotationEffect(AnyView view, const ClockHandRotationPeriod& period,
                                              const TimeZone& timeZone, UnitPoint anchor);

}  // namespace tavrin::KelClockWidgetKit
