// SPDX-License-Identifier: MIT
#include "cli/project/widget_settings.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>
#include <utility>

#include <toml++/toml.h>

#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_reader.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/doors/words.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin::cli {
namespace {

constexpr std::size_t mostBytes = std::size_t{64} << 10;
constexpr std::array<std::string_view, 7> keys{"families",   "screens",    "date",  "time-zone",
                                               "appearance", "background", "models"};

/// Where a line and a column, counted from 1 in code points, are in a text.
TextPlace placeOf(std::string_view text, const toml::source_position& position) {
    std::size_t offset = 0;
    for (std::size_t line = 1; line < position.line && offset < text.size(); ++line)
        offset = std::min(text.find('\n', offset), text.size() - 1) + 1;
    const auto isContinued = [&](std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    for (std::size_t column = 1; column < position.column && offset < text.size(); ++column) do
            ++offset;
        while (isContinued(offset));
    return placeAt(text, offset);
}

/// What a value is, in words for people.
std::string_view kindOf(const toml::node& node) {
    switch (node.type()) {
        case toml::node_type::table: return "a table";
        case toml::node_type::array: return "a list";
        case toml::node_type::string: return "a text";
        case toml::node_type::integer:
        case toml::node_type::floating_point: return "a number";
        case toml::node_type::boolean: return "true or false";
        default: return "a date";
    }
}

/// Takes a table apart.
class SettingsReader {
public:
    explicit SettingsReader(Source source) : source_(std::move(source)) {}

    WidgetSettings read() {
        if (source_.text.size() > mostBytes) fail("settings of more than 64 KiB are not read", {1, 1});
        if (!isValidUtf8(source_.text)) fail("settings are UTF-8, and this is none", {1, 1});
        try {
            readTable(toml::parse(source_.text));
        } catch (const toml::parse_error& error) {
            fail(std::string(error.description()), error.source().begin);
        }
        return std::move(settings_);
    }

private:
    void readTable(const toml::table& table) {
        for (const auto& [key, value] : table) {
            const std::string_view name = key.str();
            if (name == "families")
                settings_.families = wordsOf(name, value, "the names of widget families");
            else if (name == "screens")
                settings_.screens = wordsOf(name, value, "sizes of screens such as \"390x844\"");
            else if (name == "date")
                settings_.date = dateOf(value);
            else if (name == "time-zone")
                settings_.timeZone =
                    judged(name, value, [&](const auto& text) { static_cast<void>(readTimeZone(name, text)); });
            else if (name == "appearance")
                settings_.appearance = judged(
                    name, value, [&](const auto& text) { static_cast<void>(readWord(name, text, appearanceWords)); });
            else if (name == "background")
                settings_.background =
                    judged(name, value, [&](const auto& text) { static_cast<void>(readBackground(name, text)); });
            else if (name == "models")
                readModels(value);
            else
                failUnknown(name, "settings have no '", key.source().begin, keys);
        }
        judgeRooms(table);
    }

    /// Families are those of all screens, whichever of the two comes first in the text.
    void judgeRooms(const toml::table& table) {
        std::vector<Size> screens;
        forEach(table, "screens", [&](const std::string& word) { screens.push_back(readSize("screens", word)); });
        if (screens.empty()) screens.push_back(DrawingOptions().screen);
        forEach(table, "families", [&](const std::string& word) {
            for (const Size screen : screens) static_cast<void>(readFamily("families", word, screen));
        });
    }

    template <class Judge>
    void forEach(const toml::table& table, std::string_view key, const Judge& judge) {
        const toml::array* const list = table[key].as_array();
        if (!list) return;
        for (const toml::node& element : *list) placed(element, [&] { judge(element.value_or(std::string())); });
    }

    /// Does what may refuse a value, and says where that is.
    template <class Work>
    void placed(const toml::node& node, const Work& work) {
        try {
            work();
        } catch (const OptionError& error) {
            fail(error.what(), node.source().begin);
        }
    }

    std::string textOf(std::string_view key, const toml::node& value, std::string_view wanted) {
        if (const auto text = value.value<std::string>()) return *text;
        fail(std::string(key) + " takes " + std::string(wanted) + ", not " + std::string(kindOf(value)),
             value.source().begin);
    }

    template <class Judge>
    std::string judged(std::string_view key, const toml::node& value, const Judge& judge) {
        std::string text = textOf(key, value, "a text");
        placed(value, [&] { judge(OptionValue(text)); });
        return text;
    }

    std::vector<std::string> wordsOf(std::string_view key, const toml::node& value, std::string_view wanted) {
        const toml::array* const list = value.as_array();
        const std::string kind = "a list of " + std::string(wanted);
        if (!list || list->empty())
            fail(std::string(key) + " takes " + kind + ", not " + (list ? "none" : std::string(kindOf(value))),
                 value.source().begin);
        std::vector<std::string> words;
        for (const toml::node& element : *list) {
            words.push_back(textOf(key, element, kind));
            if (std::count(words.begin(), words.end(), words.back()) > 1)
                fail("'" + words.back() + "' stands in " + std::string(key) + " twice", element.source().begin);
        }
        return words;
    }

    /// A date of TOML's own with an offset from UTC, or one as a text.
    std::string dateOf(const toml::node& value) {
        std::string text;
        if (const auto date = value.value_exact<toml::date_time>(); date && date->offset) {
            std::ostringstream written;
            written << *date;
            text = written.str();
        } else {
            text = textOf("date", value, wanted::moment);
        }
        placed(value, [&] { static_cast<void>(readDate("date", text)); });
        return text;
    }

    void readModels(const toml::node& value) {
        const toml::table* const table = value.as_table();
        if (!table)
            fail("models takes a table of families and files, not " + std::string(kindOf(value)), value.source().begin);
        constexpr std::string_view modelsFile = "the name of a model's file";
        for (const auto& [family, file] : *table) {
            if (!widgetFamily(family.str()))
                failUnknown(family.str(), "there is no widget family '", family.source().begin, widgetFamilyNames);
            std::string name = textOf(family.str(), file, modelsFile);
            if (name.empty() || name == "-")
                fail(std::string(family.str()) + " takes " + std::string(modelsFile) + ", not '" + name + "'",
                     file.source().begin);
            settings_.models[std::string(family.str())] = std::move(name);
        }
    }

    [[noreturn]] void failUnknown(std::string_view word, std::string_view what, const toml::source_position& place,
                                  std::span<const std::string_view> known) {
        const std::string meant = suggestion(word, known);
        fail(std::string(what) + std::string(word) + "'" +
                 (meant.empty() ? "; there are " + listedWithAnd(known) : meant),
             place);
    }

    static std::string listedWithAnd(std::span<const std::string_view> words) {
        return joined(words.first(words.size() - 1), ", ") + " and " + std::string(words.back());
    }

    [[noreturn]] void fail(const std::string& message, const toml::source_position& position) {
        const TextPlace place = placeOf(source_.text, position);
        throw SettingsError(message, std::move(source_), place);
    }

    Source source_;
    WidgetSettings settings_;
};

}  // namespace

WidgetSettings readSettings(Source source) { return SettingsReader(std::move(source)).read(); }

}  // namespace tavrin::cli
