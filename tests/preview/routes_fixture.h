// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "cli/preview/routes.h"
#include "tests/preview/requests.h"

namespace tavrin::cli {

inline constexpr std::string_view hello =
    R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}})";

/// Asks what the page would ask, of a folder of its own for each test.
class RoutesTest : public ::testing::Test {
protected:
    [[nodiscard]] HTTPResponse get(const std::string& path, const std::string& query = {}) const {
        return routes_.answer({.method = "GET", .path = path, .query = query});
    }
    [[nodiscard]] HTTPResponse post(const std::string& path, const std::string& body) const {
        return routes_.answer({.method = "POST", .path = path, .body = body});
    }
    [[nodiscard]] HTTPResponse render(std::string_view document, const std::string& more = {}) const {
        return post("/api/render", drawingOf(document, more));
    }
    static std::string drawingOf(std::string_view document, const std::string& more = {}) {
        return R"({"document": )" + quoted(document) +
               R"(, "family": "tiny", "width": 40, "height": 20, "scale": 2, "appearance": "dark")"
               R"(, "date": 1.5e9, "timeZone": "UTC")" +
               more + "}";
    }

    ScratchFolder scratch_;
    ProjectFolder folder_{scratch_.path()};
    Routes routes_{folder_, {.fetchPolicy = FetchPolicy::none}};

private:
    static std::string quoted(std::string_view text) {
        std::string literal = "\"";
        for (const char c : text) literal += (c == '"' ? "\\" : "") + std::string(1, c);
        return literal + "\"";
    }
};

}  // namespace tavrin::cli
