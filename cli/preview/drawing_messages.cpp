// SPDX-License-Identifier: MIT
#include "cli/preview/drawing_messages.h"

#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/failure_text.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin::cli {
namespace {

constexpr double leastSide = 1;
constexpr double mostSide = 2000;
constexpr double leastScale = 0.25;
constexpr double mostScale = 8;
constexpr double mostSeconds = 3e11;  // about the year 9999

TimeZone timeZoneOf(const RequestFields& fields) {
    const std::string name = fields.text("timeZone");
    if (const auto zone = TimeZone::named(name)) return *zone;
    throw RequestError("there is no time zone '" + name + "'");
}

/// The words of a text such as "light,dark"; none of one that is missing.
std::vector<std::string> wordsOf(const RequestFields& fields, std::string_view key) {
    std::vector<std::string> words;
    std::istringstream text(fields.optionalText(key).value_or(""));
    for (std::string word; std::getline(text, word, ',');) words.push_back(word);
    return words;
}

/// What lies behind the widget, and what is to be checked besides the room that is drawn: families of a screen, and
/// appearances.
void readLooks(const RequestFields& fields, Drawing& drawing) {
    try {
        if (const auto background = fields.optionalText("background"))
            drawing.options.background = readBackground("background", *background);
        for (const std::string& family : wordsOf(fields, "families"))
            drawing.rooms.push_back(readFamily("families", family, readSize("screen", fields.text("screen"))));
        for (const std::string& word : wordsOf(fields, "appearances"))
            drawing.appearances.push_back(static_cast<Appearance>(readWord("appearances", word, appearanceWords)));
    } catch (const OptionError& error) {
        throw RequestError(error.what());
    }
}

}  // namespace

Drawing drawingOf(const RequestFields& fields) {
    Drawing drawing{.path = fields.optionalText("path"),
                    .document = fields.text("document"),
                    .model = fields.optionalText("model")};
    WidgetOptions& options = drawing.options;
    options.room.name = fields.text("family");
    options.room.size = {fields.number("width", leastSide, mostSide), fields.number("height", leastSide, mostSide)};
    if (const auto family = widgetFamily(options.room.name)) options.room.linksCanBeTapped = linksCanBeTapped(*family);
    options.scale = fields.number("scale", leastScale, mostScale);
    options.rounded = fields.flag("rounded");
    options.appearance = fields.text("appearance") == "dark" ? Appearance::dark : Appearance::light;
    options.date = Date{fields.number("date", -mostSeconds, mostSeconds)};
    options.timeZone = timeZoneOf(fields);
    readLooks(fields, drawing);
    return drawing;
}

HTTPResponse drawnMessage(const Drawn& drawn) {
    if (drawn.failure) return HTTPResponse::json(toJSONLine(*drawn.failure, true));
    JSONWriter head(JSONWriter::Style::compact);
    head.beginObject().key("milliseconds").value(drawn.milliseconds);
    if (drawn.validUntil) head.key("validUntil").value(drawn.validUntil->secondsSince1970);
    head.key("notes").beginArray();
    for (const std::string& note : drawn.notes) head.value(note);
    head.endArray().endObject();
    return {.contentType = "application/octet-stream", .body = std::move(head).text() + "\n" + drawn.picture};
}

HTTPResponse explainedMessage(Explained explained) {
    if (explained.failure) return HTTPResponse::json(toJSONLine(*explained.failure, true));
    return HTTPResponse::json("{\"layout\":" + std::move(explained.layout) +
                              ",\"explanation\":" + std::move(explained.explanation) + "}");
}

}  // namespace tavrin::cli
