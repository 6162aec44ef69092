// SPDX-License-Identifier: MIT
#include "cli/preview/request_guard.h"

#include <string>

#include "cli/preview/http_status.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

bool isOwnHost(const std::string& host, std::uint16_t port) {
    constexpr std::uint16_t usualPort = 80;  // which browsers leave out
    const std::string behind = port == usualPort ? "" : ":" + tavrin::toText(std::int64_t{port});
    return host == "127.0.0.1" + behind || host == "localhost" + behind;
}

/// Whether another page asks. A person may follow a link to the page itself from anywhere.
bool comesFromElsewhere(const HTTPRequest& request) {
    if (!request.origin.empty() && request.origin != "http://" + request.host) return true;
    const bool isOwnSite =
        request.fetchSite.empty() || request.fetchSite == "same-origin" || request.fetchSite == "none";
    return !isOwnSite && request.path != "/";
}

}  // namespace

std::optional<HTTPResponse> refusal(const HTTPRequest& request, std::uint16_t port) {
    if (!isOwnHost(request.host, port))
        return HTTPResponse::failure(http_status::misdirected, "this server has another name");
    if (comesFromElsewhere(request))
        return HTTPResponse::failure(http_status::forbidden, "only the preview's own page may ask this");
    if (request.method == "POST" && !request.contentType.starts_with("application/json"))
        return HTTPResponse::failure(http_status::wrongType, "what is posted must be application/json");
    return std::nullopt;
}

}  // namespace tavrin::cli
