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
#include <stdexcept>
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

/// The lines `key = value` of settings, without quotation marks; of a list the words with blanks between them.
inline std::map<std::string, std::string> readSettings(const std::filesystem::path& file) {
    std::map<std::string, std::string> settings;
    std::istringstream lines(readFile(file));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t equals = line.find(" = ");
        if (equals == std::string::npos) throw std::invalid_argument(file.string() + ": " + line);
        std::string value = line.substr(equals + 3);
        std::erase_if(value, [](char c) { return c == '"' || c == '[' || c == ']' || c == ','; });
        settings[line.substr(0, equals)] = value;
    }
    return settings;
}

/// A folder with `document.json`, perhaps `model.json`, and `options.txt`, the program's options for it, or
/// `widget.toml`. Of families that this lists the folder is one case for each.
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
        for (const auto& [key, value] : readSettings(folder / "widget.toml"))
            if (key != "families") options["--" + key] = value;
        if (!family.empty()) options["--family"] = family;
        if (exists(folder / "pictures")) options["--image-cache-dir"] = "pictures";
        for (std::string key, value; words >> key >> value;) options[key] = value;
        return options;
    }

    /// What these say; an option that this does not know is a mistake there.
    [[nodiscard]] WidgetOptions widgetOptions(Appearance appearance = Appearance::light) const {
        WidgetOptions widget;
        widget.appearance = appearance;
        for (const auto& [option, value] : options()) {
            if (option == "--date")
                widget.date = Date::parseRFC3339(value).value();
            else if (option == "--time-zone")
                widget.timeZone = TimeZone::named(value).value();
            else if (option == "--family")
                widget.room = widgetRoom(widgetFamily(value).value(), {390, 844}).value();
            else if (option == "--background" && value == "none")
                widget.background.kind = WidgetBackground::Kind::none;
            else if (option == "--scale")
                widget.scale = std::stod(value);
            else if (option == "--image-cache-dir")
                widget.imageCacheDir = URL::fileURL(folder / value);
            else
                throw std::invalid_argument(folder / option);
        }
        return widget;
    }

    /// A document, by default the case's own, bound to the case's model.
    [[nodiscard]] BoundDocument bound(const std::string& document, const WidgetOptions& options) const {
        const std::string model = readFile(folder / "model.json");
        return Document(document).bind(model.empty() ? std::nullopt : std::optional<std::string_view>(model), options);
    }
    [[nodiscard]] BoundDocument bound(const WidgetOptions& options) const { return bound(document(), options); }
    [[nodiscard]] Widget widget(const WidgetOptions& options) const { return bound(options).widget(options); }
    [[nodiscard]] Widget widget(Appearance appearance) const { return widget(widgetOptions(appearance)); }
};

/// The families that a case's settings list; without a list one nameless family.
inline std::vector<std::string> familiesOf(const std::filesystem::path& folder) {
    std::istringstream words(readSettings(folder / "widget.toml")["families"]);
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
