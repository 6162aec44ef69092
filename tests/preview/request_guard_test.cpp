// SPDX-License-Identifier: MIT
#include "cli/preview/request_guard.h"

#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "cli/preview/secret.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view secret = "0123456789abcdef0123456789abcdef";

/// The status of what is answered to a request below the secret; 0: it may be answered.
unsigned refusedWith(HTTPRequest request, std::uint16_t port) {
    request.path = "/" + std::string(secret) + request.path;
    const auto refused = refusal(request, port, secret);
    return refused ? refused->status : 0;
}

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
        EXPECT_EQ(refusedWith(row.request, 8080), row.status);
    }
}

TEST(RequestGuard, KnowsThePortThatBrowsersLeaveOut) {
    EXPECT_EQ(refusedWith({.method = "GET", .path = "/", .host = "localhost"}, 80), 0);
    EXPECT_EQ(refusedWith({.method = "GET", .path = "/", .host = "localhost"}, 8080), 421);
    EXPECT_EQ(refusedWith({.method = "GET", .path = "/", .host = "evil.example"}, 80), 421);
}

TEST(RequestGuard, WantsTheSecret) {
    const struct {
        const char* why;
        std::string path;
        std::string left;  // empty: there is nothing
    } rows[] = {
        {"the page", "/0123456789abcdef0123456789abcdef/", "/"},
        {"what it asks", "/0123456789abcdef0123456789abcdef/api/files", "/api/files"},
        {"no slash behind it", "/0123456789abcdef0123456789abcdef", ""},
        {"without it", "/", ""},
        {"nothing", "", ""},
        {"a wrong last digit", "/0123456789abcdef0123456789abcdee/", ""},
        {"a wrong first digit", "/1123456789abcdef0123456789abcdef/", ""},
        {"too short", "/0123456789abcdef0123456789abcde/", ""},
        {"too long", "/0123456789abcdef0123456789abcdef0/", ""},
        {"in capitals", "/0123456789ABCDEF0123456789ABCDEF/", ""},
        {"later", "//0123456789abcdef0123456789abcdef/", ""},
        {"not from the top", "x0123456789abcdef0123456789abcdef/", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        HTTPRequest request{.method = "GET", .path = row.path, .host = "127.0.0.1:8080"};
        const auto refused = refusal(request, 8080, secret);
        EXPECT_EQ(refused ? refused->status : 0, row.left.empty() ? 404 : 0);
        EXPECT_EQ(request.path, row.left.empty() ? row.path : row.left);
    }
}

TEST(RequestGuard, KnowsNoSecretTwice) {
    const std::string first = newSecret();
    EXPECT_EQ(first.size(), 32);
    EXPECT_EQ(first.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_NE(newSecret(), first);
}

}  // namespace
}  // namespace tavrin::cli
