// SPDX-License-Identifier: MIT
#include "cli/serve/openapi.h"

#include <initializer_list>
#include <span>
#include <string_view>
#include <utility>

#include "cli/serve/openapi_options.h"
#include "cli/serve/request_options.h"
#include "cli/serve/route_table.h"
#include "tavrin/doors/media_type.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view jsonType = "application/json";
constexpr std::string_view schemaType = "application/schema+json";
constexpr std::string_view problemType = "application/problem+json";

/// A failure that is answered with a problem.
struct ProblemInfo {
    unsigned status;
    std::string_view description;
};

constexpr ProblemInfo problems[] = {
    {400, "The request has not the form that is asked for"},
    {403, "The address is not signed as the server wants it"},
    {404, "There is no such widget"},
    {405, "The address is asked by another method"},
    {413, "The body is too large"},
    {414, "The address is too long"},
    {415, "The body is not JSON"},
    {422, "The document or its model is at fault, or its budget is spent"},
    {429, "Too many requests wait to be drawn"},
    {431, "The request's headers are too large"},
    {500, "The server is at fault"},
    {503, "The server is about to end, or has not enough memory"},
    {504, "It took too long"},
};

using Statuses = std::initializer_list<unsigned>;
constexpr Statuses ofPictures{400, 403, 404, 405, 413, 414, 422, 429, 431, 500, 503, 504};
constexpr Statuses ofBodies{400, 403, 405, 413, 414, 415, 422, 429, 431, 500, 503, 504};
constexpr Statuses ofTexts{400, 405, 413, 414, 431, 500, 503};

Statuses problemsOf(Route route) {
    switch (route) {
        case Route::render:
        case Route::check: return ofBodies;
        case Route::widget: return ofPictures;
        default: return ofTexts;
    }
}

/// The description of operations, answers and bodies; a document is written once, from top to bottom.
class OpenAPIWriter {
public:
    std::string write() {
        out_.beginObject().key("openapi").value("3.1.0");
        out_.key("info").beginObject();
        out_.key("title").value("Tavrin").key("version").value(TAVRIN_VERSION);
        out_.key("description").value("Pictures of home-screen widgets, drawn from small JSON documents.");
        out_.endObject();
        out_.key("paths").beginObject();
        for (const RouteInfo& info : routeTable) writePath(info);
        out_.endObject();
        out_.key("components").beginObject();
        writeResponses();
        writeSchemas();
        out_.endObject().endObject();
        return std::move(out_).text();
    }

private:
    void writePath(const RouteInfo& info) {
        out_.key(info.path).beginObject();
        if (info.route == Route::widget) writeWidgetParameters();
        if (info.method == "GET") {
            writeOperation("get", std::string(name(info.route)), info);
            if (info.route == Route::widget) writeOperation("head", "widgetHead", info);
        } else {
            writeOperation("post", std::string(name(info.route)), info);
        }
        out_.endObject();
    }

    void writeOperation(std::string_view method, const std::string& id, const RouteInfo& info) {
        out_.key(method).beginObject().key("operationId").value(id).key("summary").value(info.summary);
        if (info.method == "POST") {
            out_.key("requestBody").beginObject().key("required").value(true);
            out_.key("content").beginObject().key(jsonType).beginObject();
            reference("schema", "schemas/Drawing");
            writeDrawingExample();
            out_.endObject().endObject().endObject();
        }
        out_.key("responses").beginObject();
        writeSuccess(info.route, method == "head");
        if (info.route == Route::widget) reference("304", "responses/NotModified");
        for (const unsigned status : problemsOf(info.route))
            reference(toText(status), "responses/Problem" + toText(status));
        out_.endObject().endObject();
    }

    void writeDrawingExample() {
        out_.key("example").beginObject();
        out_.key("document").beginObject().key("version").value("1.0").key("nodes").beginObject();
        out_.key("main").beginObject().key("type").value("text").key("content").value("{{initServerParam.greeting}}");
        out_.endObject().endObject().endObject();
        out_.key("model").beginObject().key("greeting").value("Hello").endObject();
        out_.key("options").beginObject().key("family").value("systemSmall").key("scale").value(2).endObject();
        out_.endObject();
    }

    void writeSuccess(Route route, bool isHead) {
        out_.key("200").beginObject();
        switch (route) {
            case Route::render:
            case Route::widget:
                out_.key("description").value("The picture");
                writePictureHeaders();
                if (!isHead) writePictureContent();
                break;
            case Route::check:
                out_.key("description").value("What was found");
                writeContent(jsonType, "Diagnostics");
                break;
            case Route::metrics:
            case Route::health:
            case Route::ready:
                out_.key("description").value(route == Route::metrics ? "What has been counted" : "It is so");
                break;
            default:
                out_.key("description").value("A JSON text");
                out_.key("content").beginObject().key(route == Route::schema ? schemaType : jsonType).beginObject();
                out_.key("schema").beginObject().key("type").value("object").endObject();
                out_.endObject().endObject();
        }
        out_.endObject();
    }

    void writePictureContent() {
        out_.key("content").beginObject();
        for (const std::string_view type : mediaTypes.values()) out_.key(type).beginObject().endObject();
        out_.endObject();
    }

    void writePictureHeaders() {
        writeHeaders(
            {{"ETag", "Another picture has another one"}, {"Cache-Control", "How long the picture stays the same"}});
    }

    void writeHeaders(std::initializer_list<std::pair<std::string_view, std::string_view>> headers) {
        out_.key("headers").beginObject();
        for (const auto& [header, description] : headers) {
            out_.key(header).beginObject().key("description").value(description).key("required").value(true);
            out_.key("schema").beginObject().key("type").value("string").endObject().endObject();
        }
        out_.endObject();
    }

    void writeWidgetParameters() {
        out_.key("parameters").beginArray();
        beginParameter("name", "path", "The document's file without .json");
        out_.key("type")
            .value("string")
            .key("pattern")
            .value("^[^./\\x00-\\x1f][^/\\x00-\\x1f]*$")
            .key("maxLength")
            .value(200)
            .endObject();
        out_.key("example").value("weather").endObject();
        beginParameter("extension", "path", "How the picture is written");
        writeWords(pictureFormatWords);
        out_.endObject().endObject();
        beginParameter("model", "query", "The model's text, in base64url without padding");
        out_.key("type").value("string").endObject().endObject();
        for (const Option& option : sharedOptions()) {
            // The extension says the format.
            if (!isForRequests(option.name) || option.name == OptionName::format) continue;
            beginParameter(name(option.name), "query", option.sentence);
            writeOptionSchema(option, out_);
            out_.endObject().endObject();
        }
        beginParameter("expires", "query", "With a signature: when it ceases to hold, in seconds since 1970");
        out_.key("type").value("integer").key("minimum").value(0).endObject().endObject();
        beginParameter("s", "query",
                       "The signature, where the server wants one: the base64url HMAC-SHA-256, without padding, of all "
                       "bytes of path and query before it. It is the last member");
        out_.key("type").value("string").endObject().endObject();
        out_.endArray();
    }

    /// Leaves its schema open.
    void beginParameter(std::string_view parameter, std::string_view place, std::string_view description) {
        out_.beginObject().key("name").value(parameter).key("in").value(place).key("description").value(description);
        if (place == "path") out_.key("required").value(true);
        out_.key("schema").beginObject();
    }

    void writeResponses() {
        out_.key("responses").beginObject();
        out_.key("NotModified")
            .beginObject()
            .key("description")
            .value("The picture is the one that If-None-Match names");
        writePictureHeaders();
        out_.endObject();
        for (const ProblemInfo& problem : problems) {
            out_.key("Problem" + toText(problem.status)).beginObject().key("description").value(problem.description);
            if (problem.status == 405) writeHeaders({{"Allow", "The methods that the address understands"}});
            if (problem.status == 429) writeHeaders({{"Retry-After", "In how many seconds to ask again"}});
            writeContent(problemType, "Problem");
            out_.endObject();
        }
        out_.endObject();
    }

    void writeSchemas() {
        out_.key("schemas").beginObject();
        writeDrawingSchema();
        writeOptionsSchema(out_.key("Options"));
        writeProblemSchema();
        writeDiagnosticsSchema();
        out_.endObject();
    }

    void writeDrawingSchema() {
        out_.key("Drawing").beginObject().key("type").value("object");
        out_.key("required").beginArray().value("document").endArray();
        out_.key("properties").beginObject();
        out_.key("document").beginObject().key("description").value("A document, or its text");
        writeTypes({"object", "string"});
        out_.endObject();
        out_.key("model").beginObject().key("description").value("Its model, or the text of one").endObject();
        reference("options", "schemas/Options");
        out_.endObject().key("additionalProperties").value(false).endObject();
    }

    void writeProblemSchema() {
        out_.key("Problem").beginObject().key("type").value("object");
        out_.key("required").beginArray().value("status").value("type").value("message").endArray();
        out_.key("properties").beginObject();
        for (const std::string_view whole : {"status", "code", "line", "column"}) writeProperty(whole, "integer");
        for (const std::string_view text : {"type", "kind", "message", "key", "domain"}) writeProperty(text, "string");
        writePathProperty();
        out_.key("role").beginObject().key("enum").beginArray().value("document").value("model").endArray().endObject();
        out_.endObject().endObject();
    }

    void writeDiagnosticsSchema() {
        out_.key("Diagnostics").beginObject().key("type").value("object");
        out_.key("required").beginArray().value("diagnostics").endArray();
        out_.key("properties").beginObject().key("diagnostics").beginObject().key("type").value("array");
        out_.key("items").beginObject().key("type").value("object");
        out_.key("required").beginArray().value("severity").value("code").value("message").endArray();
        out_.key("properties").beginObject();
        for (const std::string_view text : {"severity", "code", "message"}) writeProperty(text, "string");
        out_.endObject().endObject();
        out_.endObject().endObject().endObject();
    }

    void writeProperty(std::string_view property, std::string_view type) {
        out_.key(property).beginObject().key("type").value(type).endObject();
    }

    void writePathProperty() {
        out_.key("path").beginObject().key("type").value("array").key("items").beginObject();
        writeTypes({"string", "integer"});
        out_.endObject().endObject();
    }

    void writeTypes(std::initializer_list<std::string_view> types) {
        out_.key("type").beginArray();
        for (const std::string_view type : types) out_.value(type);
        out_.endArray();
    }

    void writeWords(std::span<const std::string_view> words) {
        out_.key("enum").beginArray();
        for (const std::string_view word : words) out_.value(word);
        out_.endArray();
    }

    void writeContent(std::string_view type, std::string_view schema) {
        out_.key("content").beginObject().key(type).beginObject();
        reference("schema", "schemas/" + std::string(schema));
        out_.endObject().endObject();
    }

    void reference(std::string_view key, const std::string& component) {
        out_.key(key).beginObject().key("$ref").value("#/components/" + component).endObject();
    }

    JSONWriter out_{JSONWriter::Style::pretty};
};

}  // namespace

std::string openapiJSON() { return OpenAPIWriter().write(); }

}  // namespace tavrin::cli
