// SPDX-License-Identifier: MIT
#include "cli/project/beside_options.h"

#include <string>
#include <vector>

namespace tavrin::cli {

void readBeside(OptionReader& reader, const WidgetFiles& files, const WidgetSettings& settings,
                const std::function<bool(OptionName)>& isSaid) {
    const auto read = [&](OptionName option, const std::optional<std::string>& value) {
        if (value && !isSaid(option)) reader.read(option, *value);
    };
    const auto first = [](const std::vector<std::string>& values) {
        return values.empty() ? std::nullopt : std::optional(values.front());
    };
    if (!isSaid(OptionName::size)) {
        read(OptionName::family, first(settings.families));
        read(OptionName::screen, first(settings.screens));
    }
    read(OptionName::date, settings.date);
    read(OptionName::timeZone, settings.timeZone);
    read(OptionName::appearance, settings.appearance);
    read(OptionName::background, settings.background);
    if (files.pictures) read(OptionName::imageCacheDir, files.pictures->string());
}

std::optional<std::filesystem::path> modelFile(const WidgetFiles& files, const WidgetSettings& settings,
                                               std::string_view family) {
    const auto own = settings.models.find(std::string(family));
    if (own == settings.models.end() || !files.settings) return files.model;
    return files.settings->parent_path() / own->second;
}

}  // namespace tavrin::cli
