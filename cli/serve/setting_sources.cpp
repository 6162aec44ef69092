// SPDX-License-Identifier: MIT
#include "cli/serve/setting_sources.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <toml++/toml.h>

#include "cli/input.h"
#include "cli/io_error.h"
#include "cli/usage_error.h"
#include "tavrin/doors/words.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view configOption = "--config";
constexpr std::size_t maximumSettingsBytes = std::size_t{1} << 20;

std::string_view inFile(std::string_view option) { return option.substr(2); }

std::string inEnvironment(std::string_view option) {
    std::string name = "TAVRIN_";
    for (const char letter : inFile(option))
        name += letter == '-' ? '_' : static_cast<char>(lowerCase(letter) == letter ? letter - 'a' + 'A' : letter);
    return name;
}

std::string placeText(const std::string& file, const toml::source_position& position) {
    return file + ":" + std::to_string(position.line) + ":" + std::to_string(position.column) + ": ";
}

toml::table parseFile(const std::string& path) {
    const std::string text = readInput(path, {});
    const std::string name = displayName(path);
    if (text.size() > maximumSettingsBytes) throw IOError("cannot read '" + name + "': it is larger than 1 MiB", name);
    try {
        return toml::parse(text, name);
    } catch (const toml::parse_error& error) {
        throw UsageError(placeText(name, error.source().begin) + std::string(error.description()));
    }
}

/// A value as the command line would have it.
std::string valueText(const toml::node& node, const std::string& place, std::string_view name) {
    if (const auto* const text = node.as_string()) return text->get();
    if (const auto* const number = node.as_integer()) return toText(number->get());
    if (const auto* const number = node.as_floating_point()) return toText(number->get());
    if (const auto* const truth = node.as_boolean()) return truth->get() ? "true" : "false";
    throw UsageError(place + std::string(name) + " takes a text, a number or a boolean");
}

void addFileSettings(const std::string& path, const std::vector<std::string_view>& options, Settings& settings) {
    const toml::table table = parseFile(path);
    const std::string file = displayName(path);
    for (const auto& [key, node] : table) {
        const std::string_view name = key.str();
        const std::string option = "--" + std::string(name);
        const auto found = std::find(options.begin(), options.end(), option);
        if (found == options.end()) {
            std::vector<std::string_view> names;
            names.reserve(options.size());
            for (const std::string_view known : options) names.push_back(inFile(known));
            throw UsageError(placeText(file, key.source().begin) + "there is no setting '" + std::string(name) + "'" +
                             suggestion(name, names));
        }
        const std::string place = placeText(file, node.source().begin);
        settings.try_emplace(*found, Setting{std::string(name), valueText(node, place, name), place});
    }
}

}  // namespace

Settings gatherSettings(const Command& command, const Environment& environment) {
    // Taken as they are listed, each source adds what those before it have not.
    Settings settings;
    std::vector<std::string_view> ofFile;
    for (const OptionInfo& option : options()) {
        if (!option.takers.contains(command.verb) || option.name == "--errors") continue;
        if (option.name != configOption) ofFile.push_back(option.name);
        if (const std::string* const given = command.find(option.name)) {
            settings.emplace(option.name, Setting{option.name, option.value.empty() ? "true" : *given});
            continue;
        }
        const std::string variable = inEnvironment(option.name);
        if (const char* const value = environment(variable.c_str()); value && *value)
            settings.emplace(option.name, Setting{variable, value});
    }
    if (const auto config = settings.find(configOption); config != settings.end())
        addFileSettings(std::string(config->second.value), ofFile, settings);
    return settings;
}

}  // namespace tavrin::cli
