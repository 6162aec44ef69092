// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/ui/widget_family.h"

/// Options that ask for several of a kind, `--families`, beside those that ask for one, `--family`.
namespace tavrin::cli {

/// The family where none is given.
inline constexpr std::string_view defaultFamily = "systemMedium";

/// Stands for the families that a widget is meant for, by its settings.
inline constexpr std::string_view meantWord = "meant";

/// Two options of which one stands instead of the other, such as one for several and one for a single thing.
struct OptionPair {
    std::string_view several;
    std::string_view one;
};

/// Throws `UsageError` where both options of a pair are given.
void refuseBoth(const Command& command, const OptionPair& pair);

/// The words of whichever option of a pair is given, each once, with that option's name.
[[nodiscard]] std::pair<std::string_view, std::vector<std::string>> wordsOf(const Command& command,
                                                                            const OptionPair& pair);

/// The families, or the size, that a command asks for, on each of several screens, at least one. The names of several
/// have their screens: "systemSmall-390x844". Throws `UsageError`.
[[nodiscard]] std::vector<WidgetRoom> readRooms(const Command& command, const std::vector<Size>& screens);

/// The family, or size, in the name of such a room.
[[nodiscard]] std::string familyIn(const WidgetRoom& room);

/// The appearances that a command asks for; `usual` where it names none. Throws `UsageError`.
[[nodiscard]] std::vector<Appearance> readAppearances(const Command& command, std::vector<Appearance> usual);

}  // namespace tavrin::cli
