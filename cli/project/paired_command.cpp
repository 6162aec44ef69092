// SPDX-License-Identifier: MIT
#include "cli/project/paired_command.h"

#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>

#include "cli/input.h"
#include "cli/several_options.h"
#include "tavrin/doors/option_reader.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/doors/words.h"

namespace tavrin::cli {
namespace {

/// Puts values into a command where none of the options stands that say the same.
class Filling {
public:
    explicit Filling(Command& command) : command_(command) {}

    [[nodiscard]] bool isFree(std::initializer_list<std::string_view> options) const {
        for (const std::string_view option : options)
            if (command_.find(option)) return false;
        return true;
    }

    void fill(std::string_view option, const std::optional<std::string>& value,
              std::initializer_list<std::string_view> instead = {}) {
        if (value && isFree({option}) && isFree(instead)) command_.values.emplace(option, *value);
    }

private:
    Command& command_;
};

void fillFamilies(Filling& filling, Command& command, const WidgetSettings& settings, bool drawsSeveral) {
    const std::string* const several = command.find("--families");
    if (several && *several == meantWord)
        command.values["--families"] =
            settings.families.empty() ? std::string(defaultFamily) : joined(settings.families, ",");
    if (settings.families.empty()) return;
    const auto families = drawsSeveral ? joined(settings.families, ",") : settings.families.front();
    filling.fill(drawsSeveral ? "--families" : "--family", families, {"--family", "--families", "--size"});
}

void fillModels(Filling& filling, PairedCommand& paired, const WidgetFiles& files, const WidgetSettings& settings,
                bool drawsSeveral) {
    if (!filling.isFree({"--model", "--models"})) return;
    if (files.settings)
        for (const auto& [family, model] : settings.models)
            paired.modelsByFamily[family] = (files.settings->parent_path() / model).string();
    std::optional<std::string> model;
    if (files.model) model = files.model->string();
    if (!drawsSeveral && !settings.models.empty()) {
        const std::string* const family = paired.command.find("--family");
        const auto own = paired.modelsByFamily.find(family ? *family : std::string(defaultFamily));
        if (own != paired.modelsByFamily.end() && !paired.command.find("--size")) model = own->second;
    }
    if (drawsSeveral)
        for (const std::filesystem::path& further : files.models) paired.furtherModels.push_back(further.string());
    // Of several each has its own name, so that none is called otherwise once there is one more.
    if (!drawsSeveral || !files.takesFirstModel()) filling.fill("--model", model);
}

}  // namespace

std::vector<Size> PairedCommand::screenSizes() const {
    std::vector<Size> sizes;
    for (const std::string& screen : screens) sizes.push_back(readSize("screens", screen));
    const std::string* const one = command.find("--screen");
    if (sizes.empty()) sizes.push_back(one ? readSize("--screen", *one) : DrawingOptions().screen);
    return sizes;
}

WidgetSettings settingsOf(const WidgetFiles& files) {
    if (!files.settings) return {};
    const std::string path = files.settings->string();
    return readSettings({path, readFound(path)});
}

PairedCommand paired(const Command& command, const WidgetFiles& files, const WidgetSettings& settings,
                     bool drawsSeveral) {
    PairedCommand paired{command};
    Filling filling(paired.command);
    fillFamilies(filling, paired.command, settings, drawsSeveral);
    if (!settings.screens.empty() && filling.isFree({"--screen", "--size"})) {
        filling.fill("--screen", settings.screens.front());
        if (drawsSeveral) paired.screens = settings.screens;
    }
    filling.fill("--date", settings.date, {"--dates", "--frames"});
    filling.fill("--time-zone", settings.timeZone);
    filling.fill("--appearance", settings.appearance, {"--appearances"});
    filling.fill("--background", settings.background);
    const std::string* const fetch = command.find("--fetch");
    const bool isFetched = command.verb == Verb::fetch || (fetch && *fetch != fetchWords[indexOf(FetchPolicy::none)]);
    if (files.pictures && !isFetched) filling.fill("--image-cache-dir", files.pictures->string());
    fillModels(filling, paired, files, settings, drawsSeveral);
    return paired;
}

}  // namespace tavrin::cli
