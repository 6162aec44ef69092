// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/dsl/modifier.h"
#include "tavrin/values/unit_point_dsl.h"

// The modifiers that draw a view moved, while layout leaves it where it was.

namespace tavrin {

/// Draws the view larger or smaller around an anchor, by default its centre; an absent factor is 1.
struct ScaleEffectModifier {
    static constexpr ModifierType type = ModifierType::scaleEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;
    static constexpr std::string_view summary =
        "Draws the view larger or smaller; the room that it takes stays as it is.";

    LosslessDSLValue<std::optional<float>> x = {};
    LosslessDSLValue<std::optional<float>> y = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr Fields fields{
        Field{"x", &ScaleEffectModifier::x,
              Note{.text = "The factor of the width; negative mirrors.", .defaultValue = "1", .example = "0.5"}},
        Field{"y", &ScaleEffectModifier::y,
              Note{.text = "The factor of the height; negative mirrors.", .defaultValue = "1", .example = "0.5"}},
        Field{"anchor", &ScaleEffectModifier::anchor, anchorNote}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Draws the view turned clockwise, by degrees, around an anchor, by default its centre.
struct RotationEffectModifier {
    static constexpr ModifierType type = ModifierType::rotationEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;
    static constexpr std::string_view summary = "Draws the view turned; the room that it takes stays as it is.";

    LosslessDSLValue<float> angle = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr Fields fields{
        Field{"angle", &RotationEffectModifier::angle,
              Note{.text = "How far to turn, clockwise.", .unit = Unit::degrees, .example = "45"}},
        Field{"anchor", &RotationEffectModifier::anchor, anchorNote}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

/// Draws the view turned like a clock's hand around an anchor, by default its centre: once in a period of seconds, in
/// a time zone. A zone that is absent or not known is the device's.
struct ClockHandRotationEffectModifier {
    static constexpr ModifierType type = ModifierType::clockHandRotationEffect;
    static constexpr DSLVersion version = DSLVersion::v1_2;
    static constexpr std::string_view summary = "Draws the view turned like the hand of a clock that shows the moment.";

    LosslessDSLValue<float> period = {};
    LosslessDSLValue<std::optional<SharedText>> timeZone = {};
    LosslessDSLValue<std::optional<UnitPointDSL>> anchor = {};

    static constexpr Fields fields{
        Field{"period", &ClockHandRotationEffectModifier::period,
              Note{.text = "The time of a full turn: 60, 3600 and 43200 for second, minute and hour hands; negative "
                           "turns backwards.",
                   .unit = Unit::seconds,
                   .example = "43200"}},
        Field{
            "timeZone", &ClockHandRotationEffectModifier::timeZone,
            Note{
                .text =
                    "The name of the clock's time zone, its abbreviation, or how far it is from Greenwich: `GMT+0530`.",
                .absent = "the device's, which also stands for a name that is not known",
                .example = R"("Europe/Paris")"}},
        Field{"anchor", &ClockHandRotationEffectModifier::anchor, anchorNote}};

    [[nodiscard]] AnyView modify(AnyView view, Context& context) const;
};

}  // namespace tavrin
