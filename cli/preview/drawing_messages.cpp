// SPDX-License-Identifier: MIT
#include "cli/preview/drawing_messages.h"

#include <utility>

#include "cli/failure_text.h"
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
