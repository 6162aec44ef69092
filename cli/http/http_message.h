// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/render_budget.h"

namespace tavrin::cli {

/// What is read of a request.
struct HTTPRequest {
    std::string method;          ///< "HEAD" is asked as "GET"; the server leaves the body out
    std::string path;            ///< decoded, without the query
    std::string query = {};      ///< what stands behind "?", as it was sent
    std::string target = {};     ///< path and query as they were sent
    std::string host = {};       ///< the header of that name; empty where it is missing, like those below
    std::string origin = {};     ///< what page asks
    std::string fetchSite = {};  ///< `Sec-Fetch-Site`: how that page and this server are related
    std::string contentType = {};
    std::string contentEncoding = {};
    std::string ifNoneMatch = {};
    std::string body = {};
    CancelToken cancel = {};  ///< once no one waits for the answer any more

    /// The decoded value of a query parameter; empty where it is missing.
    [[nodiscard]] std::string parameter(std::string_view name) const;
};

/// What is answered.
struct HTTPResponse {
    unsigned status = 200;
    std::string contentType = {};
    std::string body = {};
    /// A body that others hold, too; it stands instead of `body` where there is one.
    std::shared_ptr<const std::string> sharedBody = nullptr;
    /// Scripts and styles with this nonce may run in the page; empty for what is no page.
    std::string nonce = {};
    /// The methods that the path does understand, with status 405.
    std::string allow = {};
    /// Further headers.
    std::vector<std::pair<std::string, std::string>> headers = {};
    /// Whether the connection stays open for the server's events.
    bool isEventStream = false;

    [[nodiscard]] static HTTPResponse json(std::string text, unsigned status = 200) {
        return {.status = status, .contentType = "application/json", .body = std::move(text)};
    }
    /// `{"message": …}`
    [[nodiscard]] static HTTPResponse failure(unsigned status, std::string_view message);
};

/// What became of a request, for logs.
struct HTTPRecord {
    std::string method = {};  ///< as it was sent; empty, like the path, for what was no request
    std::string path = {};    ///< as it was sent, without the query
    unsigned status = 0;
    std::size_t bytes = 0;    ///< of the answer's body, as far as it was sent
    double milliseconds = 0;  ///< from the end of its head to that of the answer
    std::string traceparent = {};
};

}  // namespace tavrin::cli
