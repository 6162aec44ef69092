// SPDX-License-Identifier: MIT
#include "cli/preview/routes.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/http/http_status.h"
#include "cli/io_error.h"
#include "cli/new/new_widget.h"
#include "cli/preview/checking.h"
#include "cli/preview/drawing_messages.h"
#include "cli/preview/folder_error.h"
#include "cli/preview/page.h"
#include "cli/preview/project_messages.h"
#include "cli/preview/request_fields.h"
#include "cli/preview/secret.h"
#include "cli/usage_error.h"
#include "tavrin/schema/document_schema.h"

namespace tavrin::cli {
namespace {

HTTPResponse notAllowed(std::string_view method) {
    HTTPResponse response = HTTPResponse::failure(http_status::wrongMethod, "this is asked by " + std::string(method));
    response.allow = method == "GET" ? "GET, HEAD" : method;
    return response;
}

}  // namespace

struct Routes::Route {
    std::string_view method;
    std::string_view path;
    HTTPResponse (Routes::*answer)(const HTTPRequest&) const;
    bool takesLong = false;
};

const Routes::Route* Routes::routeTo(const HTTPRequest& request) {
    static constexpr std::array<Route, 15> routes{{
        {"GET", "/", &Routes::page},
        {"GET", "/preview.js", &Routes::script},
        {"GET", "/preview.css", &Routes::style},
        {"GET", "/api/project", &Routes::project},
        {"GET", "/api/schema", &Routes::schema},
        {"GET", "/api/files", &Routes::files},
        {"GET", "/api/file", &Routes::file},
        {"GET", "/api/templates", &Routes::templates},
        {"POST", "/api/save", &Routes::save},
        {"POST", "/api/new", &Routes::begin},
        {"POST", "/api/create", &Routes::create},
        {"POST", "/api/render", &Routes::render, true},
        {"POST", "/api/explain", &Routes::explain, true},
        {"POST", "/api/check", &Routes::check, true},
        {"GET", "/api/events", &Routes::events},
    }};
    const auto* const found =
        std::find_if(routes.begin(), routes.end(), [&](const Route& route) { return route.path == request.path; });
    return found == routes.end() ? nullptr : found;
}

bool Routes::takesLong(const HTTPRequest& request) {
    const Route* const route = routeTo(request);
    return route && route->takesLong;
}

HTTPResponse Routes::answer(const HTTPRequest& request) const {
    const Route* const route = routeTo(request);
    if (!route) return HTTPResponse::failure(http_status::notFound, "there is nothing here");
    if (route->method != request.method) return notAllowed(route->method);
    try {
        return (this->*route->answer)(request);
    } catch (const FolderError& error) {
        return HTTPResponse::failure(error.status, error.what());
    } catch (const RequestError& error) {
        return HTTPResponse::failure(http_status::badRequest, error.what());
    } catch (const UsageError& error) {  // of a widget's name
        return HTTPResponse::failure(http_status::badRequest, error.what());
    } catch (const IOError& error) {
        return HTTPResponse::failure(http_status::internalError, error.what());
    }
}

HTTPResponse Routes::page(const HTTPRequest&) const {
    std::string nonce = newSecret();
    std::string html = pageWithNonce(nonce);
    return {.contentType = "text/html; charset=utf-8", .body = std::move(html), .nonce = std::move(nonce)};
}

HTTPResponse Routes::script(const HTTPRequest&) const {
    return {.contentType = "text/javascript; charset=utf-8", .body = std::string(Page::script)};
}

HTTPResponse Routes::style(const HTTPRequest&) const {
    return {.contentType = "text/css; charset=utf-8", .body = std::string(Page::style)};
}

HTTPResponse Routes::project(const HTTPRequest&) const { return HTTPResponse::json(projectMessage(folder_)); }

HTTPResponse Routes::schema(const HTTPRequest&) const { return HTTPResponse::json(documentSchema()); }

HTTPResponse Routes::files(const HTTPRequest&) const { return HTTPResponse::json(filesMessage(folder_)); }

HTTPResponse Routes::file(const HTTPRequest& request) const {
    return HTTPResponse::json(fileMessage(folder_.read(request.parameter("path"))));
}

HTTPResponse Routes::save(const HTTPRequest& request) const {
    const RequestFields fields(request.body);
    return HTTPResponse::json(
        savedMessage(folder_.save(fields.text("path"), fields.text("text"), fields.text("revision"))));
}

HTTPResponse Routes::templates(const HTTPRequest&) const { return HTTPResponse::json(templatesMessage()); }

HTTPResponse Routes::begin(const HTTPRequest& request) const {
    const RequestFields fields(request.body);
    const std::string name = fields.text("template");
    const WidgetTemplate* const begun = findTemplate(name);
    if (!begun) throw RequestError("there is no template '" + name + "'");
    return HTTPResponse::json(createdMessage(folder_.create(filesOfNew(stemOfNew(fields.text("name")), *begun))));
}

HTTPResponse Routes::create(const HTTPRequest& request) const {
    const RequestFields fields(request.body);
    const std::string stem = stemOfNew(fields.text("name"));
    const std::optional<std::string> document = fields.optionalText("document");
    const std::optional<std::string> model = fields.optionalText("model");
    std::vector<NewFile> files;
    if (document) files.push_back({stem + ".json", *document});
    if (model) files.push_back({stem + ".model.json", *model});
    if (files.empty()) throw RequestError("the request has no \"document\" and no \"model\"");
    return HTTPResponse::json(createdMessage(folder_.create(files)));
}

Drawing Routes::drawing(const HTTPRequest& request) const {
    const RequestFields fields(request.body);
    Drawing drawing = drawingOf(fields);
    drawing.options.fetchPolicy = options_.fetchPolicy;
    drawing.options.budget = options_.budget;
    drawing.options.budget.cancel = request.cancel;
    drawing.options.maxImageSize = options_.maxImageSize;
    drawing.options.fonts = options_.fonts;
    if (drawing.path)
        if (const auto pictures = folder_.picturesBeside(*drawing.path))
            drawing.options.imageCacheDir = URL::fileURL(pictures->string());
    return drawing;
}

HTTPResponse Routes::render(const HTTPRequest& request) const { return drawnMessage(draw(drawing(request))); }

HTTPResponse Routes::explain(const HTTPRequest& request) const {
    return explainedMessage(cli::explain(drawing(request)));
}

HTTPResponse Routes::check(const HTTPRequest& request) const { return HTTPResponse::json(checked(drawing(request))); }

HTTPResponse Routes::events(const HTTPRequest&) const { return {.isEventStream = true}; }

}  // namespace tavrin::cli
