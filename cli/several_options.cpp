// SPDX-License-Identifier: MIT
#include "cli/several_options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin::cli {
namespace {

constexpr OptionPair families{"--families", "--family"};
constexpr OptionPair familiesOrSize{"--families", "--size"};
constexpr OptionPair appearances{"--appearances", "--appearance"};

/// The parts of "a,b", each once.
std::vector<std::string> partsOf(std::string_view list) {
    std::vector<std::string> parts;
    for (;;) {
        const std::string part(list.substr(0, list.find(',')));
        if (std::ranges::count(parts, part) == 0) parts.push_back(part);
        if (part.size() == list.size()) return parts;
        list.remove_prefix(part.size() + 1);
    }
}

constexpr std::string_view allWord = "all";

bool areAll(const std::vector<std::string>& words) { return std::ranges::count(words, allWord) > 0; }

/// The words that an option of a pair takes.
template <std::size_t Count>
std::vector<std::string_view> wordsFor(std::string_view option, const OptionPair& pair,
                                       const std::array<std::string_view, Count>& words) {
    std::vector<std::string_view> list(words.begin(), words.end());
    if (option == pair.several) list.push_back(allWord);
    if (option == families.several) list.push_back(meantWord);
    return list;
}

std::vector<WidgetRoom> familiesOfScreen(Size screen) {
    std::vector<WidgetRoom> rooms;
    for (const WidgetFamily family : enumerators<WidgetFamily>)
        if (auto room = widgetRoom(family, screen)) rooms.push_back(*std::move(room));
    return rooms;
}

}  // namespace

void refuseBoth(const Command& command, const OptionPair& pair) {
    if (command.find(pair.several) && command.find(pair.one))
        throw UsageError(std::string(pair.several) + " stands instead of " + std::string(pair.one) +
                         "; give one of them");
}

std::pair<std::string_view, std::vector<std::string>> wordsOf(const Command& command, const OptionPair& pair) {
    refuseBoth(command, pair);
    if (const std::string* list = command.find(pair.several)) return {pair.several, partsOf(*list)};
    const std::string* const one = command.find(pair.one);
    return {pair.one, one ? std::vector{*one} : std::vector<std::string>{}};
}

namespace {

std::vector<WidgetRoom> roomsOn(Size screen, const Command& command) {
    refuseBoth(command, familiesOrSize);
    if (const std::string* size = command.find("--size")) return {{*size, readSize("--size", *size)}};
    auto [option, words] = wordsOf(command, families);
    if (words.empty()) words = {std::string(defaultFamily)};
    if (option == families.several && areAll(words)) {
        if (auto rooms = familiesOfScreen(screen); !rooms.empty()) return rooms;
        words = {std::string(defaultFamily)};  // an unknown screen is reported by it
    }
    std::vector<WidgetRoom> rooms;
    const std::vector<std::string_view> known = wordsFor(option, families, widgetFamilyNames);
    for (const std::string& word : words) rooms.push_back(readFamily(option, word, screen, known));
    return rooms;
}

}  // namespace

std::vector<WidgetRoom> readRooms(const Command& command, const std::vector<Size>& screens) {
    if (screens.size() == 1) return roomsOn(screens.front(), command);
    std::vector<WidgetRoom> rooms;
    for (const Size screen : screens)
        for (WidgetRoom& room : roomsOn(screen, command)) {
            room.name += "-" + sizeText(screen);
            rooms.push_back(std::move(room));
        }
    return rooms;
}

std::string familyIn(const WidgetRoom& room) { return room.name.substr(0, room.name.find('-')); }

std::vector<Appearance> readAppearances(const Command& command, std::vector<Appearance> usual) {
    const auto& [option, words] = wordsOf(command, appearances);
    if (words.empty()) return usual;
    if (option == appearances.several && areAll(words)) return {Appearance::light, Appearance::dark};
    std::vector<Appearance> list;
    const std::vector<std::string_view> known = wordsFor(option, appearances, appearanceWords);
    for (const std::string& word : words) list.push_back(static_cast<Appearance>(readWord(option, word, known)));
    return list;
}

}  // namespace tavrin::cli
