#include "cli/matrix/matrix_options.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/io_error.h"
#include "cli/option_values.h"
#include "cli/usage_error.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

/// What asks for several of a kind, and what for one.
struct Pair {
    std::string_view several;
    std::string_view one;
};
constexpr Pair families{"--families", "--family"};
constexpr Pair appearances{"--appearances", "--appearance"};
constexpr Pair scales{"--scales", "--scale"};
constexpr Pair models{"--models", "--model"};
constexpr Pair dates{"--dates", "--date"};
constexpr Pair pairs[] = {families, appearances, scales, models, dates, {"--families", "--size"}};

const std::string* find(const Command& command, std::string_view option) {
    const auto found = command.values.find(option);
    return found == command.values.end() ? nullptr : &found->second;
}

/// The parts of "a,b", each once.
std::vector<std::string> partsOf(std::string_view list) {
    std::vector<std::string> parts;
    for (;;) {
        const std::string part(list.substr(0, list.find(',')));
        if (std::find(parts.begin(), parts.end(), part) == parts.end()) parts.push_back(part);
        if (part.size() == list.size()) return parts;
        list.remove_prefix(part.size() + 1);
    }
}

/// The words of whichever option of a pair is given, with that option's name.
std::pair<std::string_view, std::vector<std::string>> wordsOf(const Command& command, const Pair& pair) {
    if (const std::string* list = find(command, pair.several)) return {pair.several, partsOf(*list)};
    const std::string* const one = find(command, pair.one);
    return {pair.one, one ? std::vector{*one} : std::vector<std::string>{}};
}

bool isAll(const std::vector<std::string>& words) { return words.size() == 1 && words.front() == "all"; }

std::vector<Matrix::Room> familiesOfScreen(Size screen) {
    std::vector<Matrix::Room> rooms;
    for (std::size_t i = 0; i < widgetFamilyNames.size(); ++i)
        if (const auto size = widgetSize(static_cast<WidgetFamily>(i), screen))
            rooms.push_back({std::string(widgetFamilyNames[i]), *size});
    return rooms;
}

std::vector<Matrix::Room> roomsOf(const Command& command, Size screen) {
    if (const std::string* size = find(command, "--size")) return {{*size, readSize("--size", *size)}};
    auto [option, words] = wordsOf(command, families);
    if (words.empty()) words = {"systemMedium"};
    if (option == families.several && isAll(words)) {
        if (auto rooms = familiesOfScreen(screen); !rooms.empty()) return rooms;
        words = {"systemMedium"};  // an unknown screen is reported by it
    }
    std::vector<Matrix::Room> rooms;
    for (const std::string& word : words) rooms.push_back({word, readFamily(option, word, screen)});
    return rooms;
}

std::vector<Appearance> appearancesOf(const Command& command) {
    const auto& [option, words] = wordsOf(command, appearances);
    if (words.empty()) return {Appearance::light};
    if (option == appearances.several && isAll(words)) return {Appearance::light, Appearance::dark};
    std::vector<Appearance> list;
    for (const std::string& word : words)
        list.push_back(static_cast<Appearance>(readWord(option, word, appearanceWords)));
    return list;
}

std::vector<double> scalesOf(const Command& command) {
    const auto& [option, words] = wordsOf(command, scales);
    if (words.empty()) return {3};
    std::vector<double> list;
    for (const std::string& word : words) {
        const double scale = readScale(option, word);
        if (std::find(list.begin(), list.end(), scale) == list.end()) list.push_back(scale);
    }
    return list;
}

std::vector<Matrix::Model> modelsIn(const std::string& folder) {
    std::vector<Matrix::Model> list;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->path().extension() == ".json")
            list.push_back({entry->path().string(), entry->path().stem().string()});
    if (error) throw IOError("cannot read '" + folder + "': " + error.message());
    if (list.empty()) throw IOError("there is no model (*.json) in '" + folder + "'");
    std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return list;
}

std::vector<Matrix::Model> modelsOf(const Command& command) {
    if (const std::string* folder = find(command, models.several)) return modelsIn(*folder);
    const std::string* const one = find(command, models.one);
    return {{one ? std::optional(*one) : std::nullopt, ""}};
}

std::vector<Matrix::Moment> momentsOf(const Command& command, Date now) {
    const auto& [option, words] = wordsOf(command, dates);
    if (words.empty()) return {{now, "", ""}};
    std::vector<Matrix::Moment> list;
    for (const std::string& word : words) {
        std::string name = option == dates.several ? word : "";
        std::erase(name, ':');
        list.push_back({readDate(option, word), word, name});
    }
    return list;
}

}  // namespace

bool asksForMatrix(const Command& command) {
    return std::any_of(std::begin(pairs), std::end(pairs),
                       [&](const Pair& pair) { return find(command, pair.several) != nullptr; });
}

Matrix readMatrix(const Command& command, Size screen, Date now) {
    for (const auto& [several, one] : pairs)
        if (find(command, several) && find(command, one))
            throw UsageError(std::string(several) + " stands instead of " + std::string(one) + "; give one of them");
    Matrix matrix{namedDocuments(command.operands), modelsOf(command),      momentsOf(command, now),
                  roomsOf(command, screen),         appearancesOf(command), scalesOf(command)};
    if (matrix.count() > maximumCells)
        throw UsageError("that would be " + std::to_string(matrix.count()) + " pictures; " +
                         std::to_string(maximumCells) + " are the most at once");
    return matrix;
}

}  // namespace tavrin::cli
