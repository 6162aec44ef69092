// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "cli/input.h"
#include "tavrin/json/json_place.h"

namespace tavrin::cli {

/// How a widget is meant to be drawn, as `widget.toml` says it: options of the program, with their names and values.
///
///     families = ["systemSmall", "systemMedium"]   # what it is meant for; the first where one is drawn
///     screens = ["390x844"]                        # those whose families' sizes hold
///     date = 2026-11-21T08:05:00Z
///     time-zone = "Europe/Madrid"
///     appearance = "dark"                          # where it has but one
///     background = "none"
///
///     [models]                                     # of families with another model than the widget's
///     systemSmall = "small.json"                   # beside these settings
struct WidgetSettings {
    std::vector<std::string> families = {};
    std::vector<std::string> screens = {};
    std::optional<std::string> date = std::nullopt;
    std::optional<std::string> timeZone = std::nullopt;
    std::optional<std::string> appearance = std::nullopt;
    std::optional<std::string> background = std::nullopt;
    /// The files of models by the names of families.
    std::map<std::string, std::string> models = {};
};

/// Settings that cannot be followed: what is wrong in which text, and where.
struct SettingsError : std::runtime_error {
    Source source;
    TextPlace place;

    SettingsError(const std::string& message, Source source, TextPlace place)
        : std::runtime_error(message), source(std::move(source)), place(place) {}
};

/// Reads settings and judges every value. Throws `SettingsError` for the first fault: no TOML, an unknown key, a value
/// of another kind or one that the option does not take, a text of more than 64 KiB.
[[nodiscard]] WidgetSettings readSettings(Source source);

}  // namespace tavrin::cli
