// SPDX-License-Identifier: MIT
#include "cli/serve/problem.h"

#include <cstdint>
#include <utility>

#include "cli/http/http_status.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {

HTTPResponse problem(unsigned status, const ErrorDescription& error) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("status").value(std::uint64_t{status});
    writeMembers(error, writer);
    writer.endObject();
    HTTPResponse response{
        .status = status, .contentType = "application/problem+json", .body = std::move(writer).text() + "\n"};
    response.headers.emplace_back("Cache-Control", "no-store");
    if (status == http_status::tooMany || status == http_status::unavailable)
        response.headers.emplace_back("Retry-After", "1");
    return response;
}

HTTPResponse problem(unsigned status, std::string_view message) {
    const bool isOurs = status >= http_status::internalError || status == http_status::tooMany;
    return problem(status,
                   ErrorDescription{.type = isOurs ? "ServerError" : "RequestError", .message = std::string(message)});
}

}  // namespace tavrin::cli
