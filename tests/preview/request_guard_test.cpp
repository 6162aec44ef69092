// SPDX-License-Identifier: MIT
#include "cli/preview/request_guard.h"

#include <gtest/gtest.h>

namespace tavrin::cli {
namespace {

TEST(RequestGuard, LetsOnlyTheOwnPageAsk) {
    const struct {
        const char* why;
        HTTPRequest request;
        unsigned status;  // 0: it may be answered
    } rows[] = {
        {"the page itself", {.method = "GET", .path = "/", .host = "127.0.0.1:8080"}, 0},
        {"by its other name", {.method = "GET", .path = "/", .host = "localhost:8080"}, 0},
        {"a link from elsewhere to the page",
         {.method = "GET", .path = "/", .host = "127.0.0.1:8080", .fetchSite = "cross-site"},
         0},
        {"the page asks",
         {.method = "POST",
          .path = "/api/render",
          .host = "127.0.0.1:8080",
          .origin = "http://127.0.0.1:8080",
          .fetchSite = "same-origin",
          .contentType = "application/json"},
         0},
        {"another name that leads here", {.method = "GET", .path = "/", .host = "evil.example:8080"}, 421},
        {"another port", {.method = "GET", .path = "/", .host = "127.0.0.1:80"}, 421},
        {"no name", {.method = "GET", .path = "/"}, 421},
        {"a name that begins alike", {.method = "GET", .path = "/", .host = "127.0.0.1:8080.evil.example"}, 421},
        {"another page",
         {.method = "GET", .path = "/api/files", .host = "127.0.0.1:8080", .origin = "http://evil.example"},
         403},
        {"a page of another port",
         {.method = "GET", .path = "/api/files", .host = "127.0.0.1:8080", .origin = "http://127.0.0.1:3000"},
         403},
        {"a page of another name of this server",
         {.method = "GET", .path = "/api/files", .host = "127.0.0.1:8080", .origin = "http://localhost:8080"},
         403},
        {"a page without an origin",
         {.method = "GET", .path = "/api/files", .host = "127.0.0.1:8080", .origin = "null"},
         403},
        {"a picture or script of another page",
         {.method = "GET", .path = "/api/file", .host = "127.0.0.1:8080", .fetchSite = "cross-site"},
         403},
        {"another page of this machine",
         {.method = "GET", .path = "/preview.js", .host = "127.0.0.1:8080", .fetchSite = "same-site"},
         403},
        {"a plain form",
         {.method = "POST", .path = "/api/save", .host = "127.0.0.1:8080", .contentType = "text/plain"},
         415},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto refused = refusal(row.request, 8080);
        EXPECT_EQ(refused ? refused->status : 0, row.status);
    }
}

TEST(RequestGuard, KnowsThePortThatBrowsersLeaveOut) {
    EXPECT_FALSE(refusal({.method = "GET", .path = "/", .host = "localhost"}, 80));
    EXPECT_TRUE(refusal({.method = "GET", .path = "/", .host = "localhost"}, 8080));
    EXPECT_TRUE(refusal({.method = "GET", .path = "/", .host = "evil.example"}, 80));
}

}  // namespace
}  // namespace tavrin::cli
