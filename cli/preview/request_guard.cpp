// SPDX-License-Identifier: MIT
#include "cli/preview/request_guard.h"

#include <cstddef>
#include <string>

#include "cli/http/http_status.h"
#include "cli/preview/secret.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

bool isOwnHost(const std::string& host, std::uint16_t port) {
    constexpr std::uint16_t usualPort = 80;  // which browsers leave out
    const std::string behind = port == usualPort ? "" : ":" + tavrin::toText(std::int64_t{port});
    return host == "127.0.0.1" + behind || host == "localhost" + behind;
}

/// From a path that begins with the secret, takes it; false for any other.
bool takeSecret(std::string& path, std::string_view secret) {
    const std::size_t end = secret.size() + 1;
    if (path.size() <= end || path.front() != '/' || path[end] != '/') return false;
    if (!isSecret(std::string_view(path).substr(1, secret.size()), secret)) return false;
    path.erase(0, end);
    return true;
}

/// Whether another page asks. A person may follow a link to the page itself from anywhere.
bool comesFromElsewhere(const HTTPRequest& request) {
    if (!request.origin.empty() && request.origin != "http://" + request.host) return true;
    const bool isOwnSite =
        request.fetchSite.empty() || request.fetchSite == "same-origin" || request.fetchSite == "none";
    return !isOwnSite && request.path != "/";
}

}  // namespace

std::optional<HTTPResponse> refusal(HTTPRequest& request, std::uint16_t port, std::string_view secret) {
    if (!takeSecret(request.path, secret)) return HTTPResponse::failure(http_status::notFound, "there is nothing here");
    if (!isOwnHost(request.host, port))
        return HTTPResponse::failure(http_status::misdirected, "this server has another name");
    if (comesFromElsewhere(request))
        return HTTPResponse::failure(http_status::forbidden, "only the preview's own page may ask this");
    if (request.method == "POST" && !request.contentType.starts_with("application/json"))
        return HTTPResponse::failure(http_status::wrongType, "what is posted must be application/json");
    return std::nullopt;
}

}  // namespace tavrin::cli
