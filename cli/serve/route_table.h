// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin::cli {

/// What can be asked of the server of pictures.
enum class Route : unsigned char {
    render,
    widget,
    check,
    schema,
    openapi,
    health,
    ready,
    metrics,
    none,  ///< what there is nothing of
};

/// How a route is asked for.
struct RouteInfo {
    Route route = Route::none;
    std::string_view method;  ///< "GET" stands for HEAD, too
    std::string_view path;    ///< as OpenAPI writes it, with names in braces
    std::string_view summary;
};

/// The folder of the addresses of widgets.
inline constexpr std::string_view widgetsPath = "/v1/widgets/";

inline constexpr RouteInfo routeTable[] = {
    {Route::render, "POST", "/v1/render", "The picture of a document that is sent"},
    {Route::widget, "GET", "/v1/widgets/{name}.{extension}", "The picture of a document of the folder"},
    {Route::check, "POST", "/v1/check", "What is wrong or doubtful in a document that is sent"},
    {Route::schema, "GET", "/v1/schema", "The JSON Schema of documents"},
    {Route::openapi, "GET", "/openapi.json", "This description"},
    {Route::health, "GET", "/healthz", "Whether the server runs"},
    {Route::ready, "GET", "/readyz", "Whether the server takes requests"},
    {Route::metrics, "GET", "/metrics", "What has been counted, as Prometheus reads it"},
};

/// The route of a path without its query. A widget's need not be one that there is.
[[nodiscard]] constexpr Route routeOf(std::string_view path) {
    if (path.starts_with(widgetsPath)) return Route::widget;
    for (const RouteInfo& info : routeTable)
        if (info.path == path) return info.route;
    return Route::none;
}

static_assert([] {
    std::size_t at = 0;
    for (const RouteInfo& info : routeTable)
        if (indexOf(info.route) != at++) return false;
    return at == indexOf(Route::none);
}());

}  // namespace tavrin::cli
