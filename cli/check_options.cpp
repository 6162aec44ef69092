#include "cli/check_options.h"

#include <algorithm>

#include "cli/option_values.h"
#include "cli/usage_error.h"

namespace tavrin::cli {
namespace {

const std::string* find(const Command& command, std::string_view option) {
    const auto found = command.values.find(option);
    return found == command.values.end() ? nullptr : &found->second;
}

void refuseBoth(const Command& command, std::string_view one, std::string_view other) {
    if (find(command, one) && find(command, other))
        throw UsageError(std::string(one) + " stands instead of " + std::string(other) + "; give one of them");
}

/// The parts of "a,b".
std::vector<std::string_view> listOf(std::string_view value) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::string_view part = value.substr(0, value.find(','));
        if (std::find(parts.begin(), parts.end(), part) == parts.end()) parts.push_back(part);
        if (part.size() == value.size()) return parts;
        value.remove_prefix(part.size() + 1);
    }
}

/// All families that a screen has.
std::vector<DiagnosedRoom> allRooms(Size screen) {
    std::vector<DiagnosedRoom> rooms;
    for (std::size_t i = 0; i < widgetFamilyNames.size(); ++i)
        if (const auto size = widgetSize(static_cast<WidgetFamily>(i), screen))
            rooms.push_back({std::string(widgetFamilyNames[i]), *size});
    return rooms;
}

std::vector<DiagnosedRoom> roomsOf(const Command& command, Size screen) {
    refuseBoth(command, "--families", "--family");
    refuseBoth(command, "--families", "--size");
    if (const std::string* size = find(command, "--size")) return {{*size, readSize("--size", *size)}};
    if (const std::string* family = find(command, "--family"))
        return {{*family, readFamily("--family", *family, screen)}};
    const std::string* const families = find(command, "--families");
    const std::string_view list = families ? std::string_view(*families) : "systemMedium";
    if (list == "all") {
        if (auto rooms = allRooms(screen); !rooms.empty()) return rooms;
    }
    std::vector<DiagnosedRoom> rooms;
    for (const std::string_view family : listOf(list == "all" ? "systemMedium" : list))
        rooms.push_back({std::string(family), readFamily("--families", family, screen)});
    return rooms;
}

std::vector<Appearance> appearancesOf(const Command& command) {
    refuseBoth(command, "--appearances", "--appearance");
    const std::string* const one = find(command, "--appearance");
    const std::string* const several = find(command, "--appearances");
    const std::string_view list = one ? std::string_view(*one) : several ? std::string_view(*several) : "all";
    if (list == "all" && !one) return {Appearance::light, Appearance::dark};
    std::vector<Appearance> appearances;
    for (const std::string_view word : listOf(list))
        appearances.push_back(
            static_cast<Appearance>(readWord(one ? "--appearance" : "--appearances", word, appearanceWords)));
    return appearances;
}

}  // namespace

CheckOptions readCheckOptions(const Command& command, Size screen) {
    CheckOptions options;
    if (const std::string* format = find(command, "--format"))
        options.format = static_cast<CheckFormat>(readWord("--format", *format, checkFormatWords));
    options.fixes = find(command, "--fix") != nullptr;
    options.isStrict = find(command, "--strict") != nullptr;
    options.showsNotes = find(command, "--notes") != nullptr;
    options.rooms = roomsOf(command, screen);
    options.appearances = appearancesOf(command);
    if (options.fixes && std::find(command.operands.begin(), command.operands.end(), "-") != command.operands.end())
        throw UsageError("--fix changes files; standard input (\"-\") is none");
    return options;
}

}  // namespace tavrin::cli
