// SPDX-License-Identifier: MIT
#include "cli/http/http_message.h"

#include <algorithm>
#include <cstddef>

#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {

std::string HTTPRequest::parameter(std::string_view name) const {
    std::string_view rest = query;
    while (!rest.empty()) {
        const std::string_view pair = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(pair.size() + 1, rest.size()));
        const std::size_t equals = std::min(pair.find('='), pair.size());
        if (percentDecoded(pair.substr(0, equals)) == name)
            return percentDecoded(pair.substr(std::min(equals + 1, pair.size())));
    }
    return {};
}

HTTPResponse HTTPResponse::failure(unsigned status, std::string_view message) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("message").value(message).endObject();
    return json(std::move(writer).text(), status);
}

}  // namespace tavrin::cli
