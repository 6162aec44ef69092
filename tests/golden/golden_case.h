// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/tavrin.h"

// The examples and the documents of `tests/golden/cases`, for tests that draw them all.

namespace tavrin {

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::filesystem::path& path, const std::string& content) {
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/// Whether what is expected is rewritten instead of compared.
inline bool updatesGoldens() { return std::getenv("TAVRIN_UPDATE_GOLDENS") != nullptr; }

/// A folder with `document.json`, perhaps `model.json`, and `options.txt`: the program's options for it, as they are
/// given in that folder. Where there is `families.txt`, the folder is one case for each of the families it lists.
struct GoldenCase {
    std::filesystem::path folder;
    /// The name of a widget family, or nothing where the options know the size.
    std::string family = {};

    [[nodiscard]] std::string name() const { return folder.filename().string() + (family.empty() ? "" : "-" + family); }
    /// The folder of what must come of it.
    [[nodiscard]] std::filesystem::path expected() const { return family.empty() ? folder : folder / family; }
    [[nodiscard]] std::string document() const { return readFile(folder / "document.json"); }

    [[nodiscard]] std::map<std::string, std::string> options() const {
        std::istringstream words(readFile(folder / "options.txt"));
        std::map<std::string, std::string> options;
        if (!family.empty()) options["--family"] = family;
        for (std::string key, value; words >> key >> value;) options[key] = value;
        return options;
    }

    [[nodiscard]] RenderOptions renderOptions(Appearance appearance) const {
        const auto given = options();
        RenderOptions render;
        render.environment.appearance = appearance;
        if (const auto date = given.find("--date"); date != given.end())
            render.environment.date = *Date::parseRFC3339(date->second);
        if (const auto zone = given.find("--time-zone"); zone != given.end())
            render.environment.timeZone = *TimeZone::named(zone->second);
        if (const auto name = given.find("--family"); name != given.end())
            render.setRoom(widgetRoom(widgetFamily(name->second).value(), {390, 844}).value());
        if (const auto background = given.find("--background");
            background != given.end() && background->second == "none")
            render.background.kind = WidgetBackground::Kind::none;
        if (const auto scale = given.find("--scale"); scale != given.end()) render.scale = std::stod(scale->second);
        return render;
    }

    /// The view of a document, by default the case's own, with the case's model, moment and pictures.
    [[nodiscard]] AnyView view(const std::string& document) const {
        Context context;
        const auto given = options();
        if (const auto date = given.find("--date"); date != given.end())
            context.date = Date::parseRFC3339(date->second);
        context.timeZone = renderOptions(Appearance::light).environment.timeZone;
        if (const auto pictures = given.find("--image-cache-dir"); pictures != given.end())
            context.imageCacheDir = URL::fileURL(folder / pictures->second);
        const std::string model = readFile(folder / "model.json");
        return TavrinEngine().loadView(document, model.empty() ? std::nullopt : std::optional<std::string_view>(model),
                                       context);
    }
    [[nodiscard]] AnyView view() const { return view(document()); }
};

/// The families that a case's folder lists; without a list one nameless family.
inline std::vector<std::string> familiesOf(const std::filesystem::path& folder) {
    std::istringstream words(readFile(folder / "families.txt"));
    std::vector<std::string> families;
    for (std::string family; words >> family;) families.push_back(family);
    return families.empty() ? std::vector<std::string>{""} : families;
}

/// The cases of some folders of the project, in the order of their paths.
inline std::vector<GoldenCase> goldenCases(const std::vector<std::string>& places = {"examples",
                                                                                     "tests/golden/cases"}) {
    std::vector<GoldenCase> cases;
    for (const std::string& place : places) {
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(TAVRIN_SOURCE_DIR) / place))
            if (std::filesystem::exists(entry.path() / "document.json"))
                for (const std::string& family : familiesOf(entry.path())) cases.push_back({entry.path(), family});
    }
    std::stable_sort(cases.begin(), cases.end(), [](const auto& a, const auto& b) { return a.folder < b.folder; });
    return cases;
}

/// Each example once, in the last of its families, which shows the most.
inline std::vector<GoldenCase> exampleCases() {
    std::vector<GoldenCase> cases;
    for (const GoldenCase& example : goldenCases({"examples"})) {
        if (!cases.empty() && cases.back().folder == example.folder) cases.pop_back();
        cases.push_back(example);
    }
    return cases;
}

}  // namespace tavrin
