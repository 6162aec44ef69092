// SPDX-License-Identifier: MIT
#include "cli/preview/held_settings.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "cli/io_error.h"
#include "cli/preview/folder_error.h"
#include "cli/project/paired_command.h"
#include "cli/project/widget_files.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::cli {
namespace {

/// What a verb that is told nothing takes from beside a document, for all that the widget is meant for.
PairedCommand heldBeside(const WidgetFiles& files, const WidgetSettings& settings) {
    Command command;
    command.verb = Verb::check;
    return paired(command, files, settings, true);
}

void writeWords(JSONWriter& writer, std::string_view key, const std::vector<std::string>& words) {
    writer.key(key).beginArray();
    for (const std::string& word : words) writer.value(word);
    writer.endArray();
}

}  // namespace

void writeSettings(JSONWriter& writer, const WidgetSettings& settings) {
    const Command command = heldBeside({}, settings).command;
    const auto said = [&](std::string_view option) {
        const std::string* const value = command.find(option);
        return value ? std::optional(*value) : std::nullopt;
    };
    std::optional<double> date;
    if (const auto text = said("--date")) date = readDate("date", *text).secondsSince1970;
    auto zone = said("--time-zone");
    if (zone) zone = readTimeZone("time-zone", *zone).identifier();
    writer.beginObject();
    writeWords(writer, "families", settings.families);
    writeWords(writer, "screens", settings.screens);
    writer.key("date").value(date).key("timeZone").value(zone);
    writer.key("appearance").value(said("--appearance")).key("background").value(said("--background")).endObject();
}

void writePairs(JSONWriter& writer, const ProjectFolder& folder, const std::string& document) {
    WidgetFiles files;
    const auto pathOf = [&](const std::filesystem::path& path) {
        return path.lexically_normal().lexically_relative(folder.root()).generic_string();
    };
    WidgetSettings settings;
    std::optional<std::string> fault;
    try {
        files = pairedWith(folder.root() / document);
        if (files.settings)
            settings = readSettings({pathOf(*files.settings), folder.read(pathOf(*files.settings)).text});
    } catch (const SettingsError& error) {
        fault = error.source.name + ":" + std::to_string(error.place.line) + ": " + error.what();
    } catch (const FolderError& error) {
        fault = error.what();
    } catch (const IOError& error) {
        fault = folder.fromHere(error.what());
    }
    const PairedCommand held = heldBeside(files, settings);
    writer.key("model").value(files.model ? std::optional(pathOf(*files.model)) : std::nullopt);
    writer.key("settings");
    writeSettings(writer, settings);
    writer.key("models").beginObject();
    for (const auto& [family, path] : held.modelsByFamily) writer.key(family).value(pathOf(path));
    writer.endObject().key("fault").value(fault);
}

}  // namespace tavrin::cli
