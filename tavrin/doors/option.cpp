// SPDX-License-Identifier: MIT
#include "tavrin/doors/option.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/doors/words.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin {
namespace {

using enum OptionName;
using enum OptionUse;

constexpr Option table[] = {
    {family, widget, OptionKind::word, "A widget family's size", "systemMedium", widgetFamilyNames},
    {size, widget, OptionKind::size, "The widget's size in points, instead of a family's"},
    {screen, widget, OptionKind::size, "The screen whose widget sizes hold", "390x844"},
    {scale, widget, OptionKind::number, "Pixels for each point", "3", {}, 0, 100},
    {appearance, widget, OptionKind::word, "The device's appearance", "light", appearanceWords},
    {date, widget, OptionKind::moment, "The moment that is drawn, such as 2026-03-01T09:41:00Z", "now"},
    {timeZone, widget, OptionKind::timeZone, "The device's time zone, such as Europe/Madrid, CET or GMT+2",
     "the machine's"},
    {background, widget, OptionKind::color,
     "What lies behind the widget: six hexadecimal digits RRGGBB, nothing, or the platform's own", "auto"},
    {rounded, widget, OptionKind::flag, "Cut the home screen's rounded corners; transparent outside"},
    {imageCacheDir, widget, OptionKind::folder,
     "The folder in which pictures are looked for instead of on the network"},
    {maxImageSize, widget, OptionKind::size, "Larger pictures are scaled down to this size, in points"},
    {fetch, widget, OptionKind::word,
     "What may be fetched: nothing, only what has a public address on the Internet, or everything", "public",
     fetchWords},
    {fontDir, widget, OptionKind::folder, "A folder of fonts to draw with instead of the system's", "the system's"},
    {format, picture, OptionKind::word, "What the picture is written as", "png", pictureFormatWords},
    {compression, picture, OptionKind::word,
     "Whether a PNG, or a WebP without loss, is written quickly, small or between", "fast", compressionWords},
    {quality,
     picture,
     OptionKind::count,
     "The quality of a JPEG, or of a WebP that is not to be lossless",
     "85",
     {},
     1,
     100},
    {hashes, answer, OptionKind::flag, "Tell the SHA-256 of each picture"},
    {budget, widget, OptionKind::word,
     "What each picture may cost: usual, or strangers for documents of people one does not know", "usual", budgetWords},
    {budgetSteps,
     widget,
     OptionKind::count,
     "How many steps the work may take: nodes, questions of layout, characters, things drawn",
     "",
     {},
     1},
    {budgetPixels, widget, OptionKind::count, "How many pixels may be painted", "", {}, 1},
    {budgetBytes, widget, OptionKind::count, "How many bytes may be held at once", "", {}, 1},
    {budgetSeconds, widget, OptionKind::number, "How long it may take, in seconds"},
};

static_assert([] {
    for (std::size_t i = 0; i < std::size(table); ++i)
        if (indexOf(table[i].name) != i) return false;
    return std::size(table) == enumeratorCount<OptionName>;
}());

/// A name in camel case with its words apart.
std::string withSeparators(std::string_view camel, char separator) {
    std::string text;
    for (const char letter : camel) {
        if (letter >= 'A' && letter <= 'Z') text += separator;
        text += lowerCase(letter);
    }
    return text;
}

}  // namespace

std::span<const Option> sharedOptions() { return table; }

const Option& describe(OptionName name) { return table[indexOf(name)]; }

std::string spelled(OptionName name, Spelling spelling) {
    const std::string_view camel = tavrin::name(name);
    switch (spelling) {
        case Spelling::camel: return std::string(camel);
        case Spelling::snake: return withSeparators(camel, '_');
        case Spelling::kebab: break;
    }
    return "--" + withSeparators(camel, '-');
}

OptionName optionSpelled(std::string_view word, Spelling spelling) {
    std::vector<std::string> names;
    for (const OptionName name : enumerators<OptionName>) {
        names.push_back(spelled(name, spelling));
        if (names.back() == word) return name;
    }
    const std::vector<std::string_view> known(names.begin(), names.end());
    throw OptionError(OptionFault::name, std::string(word),
                      "there is no option '" + std::string(word) + "'" + suggestion(word, known));
}

OptionName budgetMember(std::string_view member) {
    constexpr std::pair<std::string_view, OptionName> members[] = {{"profile", budget},
                                                                   {"steps", budgetSteps},
                                                                   {"pixels", budgetPixels},
                                                                   {"bytes", budgetBytes},
                                                                   {"seconds", budgetSeconds}};
    std::vector<std::string_view> known;
    for (const auto& [word, name] : members) {
        if (word == member) return name;
        known.push_back(word);
    }
    throw OptionError(OptionFault::name, "budget." + std::string(member),
                      "a budget has no '" + std::string(member) + "'" + suggestion(member, known));
}

std::string wantedBy(const Option& option) {
    switch (option.kind) {
        case OptionKind::word: return listed(option.words);
        case OptionKind::flag: return std::string(wanted::flag);
        case OptionKind::number: return std::string(std::isfinite(option.most) ? wanted::upTo100 : wanted::seconds);
        case OptionKind::count: return std::string(std::isfinite(option.most) ? wanted::quality : wanted::count);
        case OptionKind::size: return std::string(wanted::size);
        case OptionKind::moment: return std::string(wanted::moment);
        case OptionKind::timeZone: return std::string(wanted::timeZone);
        case OptionKind::color: return std::string(wanted::background);
        case OptionKind::folder: break;
    }
    return std::string(wanted::folder);
}

std::string sharedOptionsJSON() {
    JSONWriter writer(JSONWriter::Style::pretty);
    writer.beginArray();
    for (const Option& option : table) {
        writer.beginObject();
        writer.key("name").value(name(option.name)).key("use").value(name(option.use));
        writer.key("kind").value(name(option.kind)).key("sentence").value(option.sentence);
        if (!option.usual.empty()) writer.key("default").value(option.usual);
        if (!option.words.empty()) {
            writer.key("words").beginArray();
            for (const std::string_view word : option.words) writer.value(word);
            writer.endArray();
        }
        if (option.least > 0) writer.key("minimum").value(option.least);
        if (std::isfinite(option.most)) writer.key("maximum").value(option.most);
        writer.endObject();
    }
    writer.endArray();
    return std::move(writer).text();
}

}  // namespace tavrin
