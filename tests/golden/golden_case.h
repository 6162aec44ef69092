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
/// given in that folder.
struct GoldenCase {
    std::filesystem::path folder;

    [[nodiscard]] std::string name() const { return folder.filename().string(); }
    [[nodiscard]] std::string document() const { return readFile(folder / "document.json"); }

    [[nodiscard]] std::map<std::string, std::string> options() const {
        std::istringstream words(readFile(folder / "options.txt"));
        std::map<std::string, std::string> options;
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
        if (const auto family = given.find("--family"); family != given.end())
            render.size = *widgetSize(*widgetFamily(family->second), {390, 844});
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

/// The cases of some folders of the project, in the order of their paths.
inline std::vector<GoldenCase> goldenCases(const std::vector<std::string>& places = {"examples",
                                                                                     "tests/golden/cases"}) {
    std::vector<GoldenCase> cases;
    for (const std::string& place : places) {
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(TAVRIN_SOURCE_DIR) / place))
            if (std::filesystem::exists(entry.path() / "document.json")) cases.push_back({entry.path()});
    }
    std::sort(cases.begin(), cases.end(), [](const auto& a, const auto& b) { return a.folder < b.folder; });
    return cases;
}

}  // namespace tavrin
