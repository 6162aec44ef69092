// SPDX-License-Identifier: MIT
#include "cli/serve/openapi.h"

#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/serve/request_options.h"
#include "cli/serve/route_table.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/json/json.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

/// What stands at a way of keys; null where there is nothing.
const JSON* at(const JSON& value, const std::vector<std::string>& way) {
    const JSON* found = &value;
    for (const std::string& key : way)
        if (found) found = found->find(key);
    return found;
}

std::vector<std::string> partsOf(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

/// Hands every "$ref" in a value to `visit`.
template <class Visit>
void visitReferences(const JSON& value, const Visit& visit) {
    if (const auto* const array = std::get_if<JSONArray>(&value.object()))
        for (const JSON& element : *array) visitReferences(element, visit);
    if (const auto* const object = std::get_if<JSONObject>(&value.object()))
        for (const auto& [key, member] : object->members()) {
            if (key.view() == "$ref") visit(member.description());
            visitReferences(member, visit);
        }
}

std::set<std::string> keysOf(const JSON* value) {
    std::set<std::string> keys;
    if (const auto* const object = value ? std::get_if<JSONObject>(&value->object()) : nullptr)
        for (const auto& member : object->members()) keys.emplace(member.first.view());
    return keys;
}

TEST(OpenAPI, DescribesEveryRoute) {
    const JSON api = JSON::parse(openapiJSON());
    EXPECT_EQ(at(api, {"openapi"})->description(), "3.1.0");
    for (const RouteInfo& info : routeTable) {
        const std::string method = info.method == "GET" ? "get" : "post";
        EXPECT_TRUE(at(api, {"paths", std::string(info.path), method, "responses", "200"})) << info.path;
    }
    EXPECT_EQ(keysOf(at(api, {"paths"})).size(), std::size(routeTable));
    EXPECT_TRUE(at(api, {"paths", "/v1/widgets/{name}.{extension}", "head"}));
}

TEST(OpenAPI, RefersOnlyToWhatThereIs) {
    const JSON api = JSON::parse(openapiJSON());
    int references = 0;
    visitReferences(api, [&](const std::string& reference) {
        ASSERT_TRUE(reference.starts_with("#/"));
        EXPECT_TRUE(at(api, partsOf(std::string_view(reference).substr(2), '/'))) << reference;
        ++references;
    });
    EXPECT_GT(references, 40);
}

TEST(OpenAPI, HasEachRoutesStatuses) {
    const JSON api = JSON::parse(openapiJSON());
    const std::set<std::string> ofBodies{"200", "400", "403", "405", "413", "414", "415",
                                         "422", "429", "431", "500", "503", "504"};
    const std::set<std::string> ofTexts{"200", "400", "405", "413", "414", "431", "500", "503"};
    const struct {
        const char* path;
        const char* method;
        std::set<std::string> statuses;
    } rows[] = {
        {"/v1/render", "post", ofBodies},
        {"/v1/check", "post", ofBodies},
        {"/v1/widgets/{name}.{extension}",
         "get",
         {"200", "304", "400", "403", "404", "405", "413", "414", "422", "429", "431", "500", "503", "504"}},
        {"/v1/schema", "get", ofTexts},
        {"/healthz", "get", ofTexts},
        {"/readyz", "get", ofTexts},
    };
    for (const auto& row : rows)
        EXPECT_EQ(keysOf(at(api, {"paths", row.path, row.method, "responses"})), row.statuses) << row.path;
    for (const std::string& name : keysOf(at(api, {"components", "responses"}))) {
        if (name == "NotModified") continue;
        const JSON* const schema =
            at(api, {"components", "responses", name, "content", "application/problem+json", "schema", "$ref"});
        ASSERT_TRUE(schema) << name;
        EXPECT_EQ(schema->description(), "#/components/schemas/Problem");
    }
    EXPECT_TRUE(at(api, {"components", "responses", "Problem429", "headers", "Retry-After"}));
}

TEST(OpenAPI, HasEveryOptionThatRequestsMayHave) {
    const JSON api = JSON::parse(openapiJSON());
    std::set<std::string> inBody;
    std::set<std::string> inQuery{"model", "expires", "s", "name", "extension"};
    for (const Option& option : sharedOptions()) {
        if (!isForRequests(option.name)) continue;
        inBody.emplace(name(option.name));
        if (option.name != OptionName::format) inQuery.emplace(name(option.name));
    }
    EXPECT_EQ(keysOf(at(api, {"components", "schemas", "Options", "properties"})), inBody);
    std::set<std::string> parameters;
    const JSON* const listed = at(api, {"paths", "/v1/widgets/{name}.{extension}", "parameters"});
    ASSERT_TRUE(listed);
    for (const JSON& parameter : std::get<JSONArray>(listed->object()))
        parameters.insert(parameter.find("name")->description());
    EXPECT_EQ(parameters, inQuery);
}

TEST(RouteTable, KnowsAPathsRoute) {
    const struct {
        const char* path;
        Route route;
    } rows[] = {
        {"/v1/render", Route::render},
        {"/v1/widgets/a.png", Route::widget},
        {"/v1/widgets/", Route::widget},
        {"/v1/widgets", Route::none},
        {"/healthz", Route::health},
        {"/metrics", Route::metrics},
        {"/openapi.json", Route::openapi},
        {"/", Route::none},
        {"", Route::none},
        {"/v1/render/", Route::none},
        {"/V1/render", Route::none},
    };
    for (const auto& row : rows) EXPECT_EQ(routeOf(row.path), row.route) << row.path;
}

TEST(RequestOptions, AreNoFolders) {
    for (const OptionName name : {OptionName::imageCacheDir, OptionName::fontDir, OptionName::hashes})
        EXPECT_THROW(refuseServersOwn(name), OptionError) << tavrin::name(name);
    for (const OptionName name : {OptionName::family, OptionName::fetch, OptionName::budgetSteps})
        EXPECT_NO_THROW(refuseServersOwn(name)) << tavrin::name(name);
}

TEST(RequestOptions, StayWithinTheServers) {
    DrawingOptions served;
    served.widget.budget = RenderBudget::strangers();
    DrawingOptions asked = served;
    asked.widget.budget = {.steps = 10, .pixels = 4'000'000'000, .bytes = 20};
    const RenderBudget kept = within(served, asked).widget.budget;
    EXPECT_EQ(kept.steps, 10U);
    EXPECT_EQ(kept.pixels, served.widget.budget.pixels);
    EXPECT_EQ(kept.bytes, 20U);
    EXPECT_EQ(kept.seconds, served.widget.budget.seconds);
    asked.widget.budget.seconds = 0.5;
    EXPECT_EQ(within(served, asked).widget.budget.seconds, 0.5);
    served.widget.budget.seconds.reset();
    asked.widget.budget.seconds.reset();
    EXPECT_FALSE(within(served, asked).widget.budget.seconds);

    asked.widget.fetchPolicy = FetchPolicy::none;
    EXPECT_EQ(within(served, asked).widget.fetchPolicy, FetchPolicy::none);
    asked.widget.fetchPolicy = FetchPolicy::all;
    try {
        static_cast<void>(within(served, asked));
        ADD_FAILURE() << "a request may fetch what the server may not";
    } catch (const OptionError& error) {
        EXPECT_THAT(error.what(), HasSubstr("fetch takes none or public here, not 'all'"));
        EXPECT_EQ(error.fault, OptionFault::value);
    }
}

}  // namespace
}  // namespace tavrin::cli
