#include "cli/preview/http_message.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "tavrin/platform/foundation/json_writer.h"

namespace tavrin::cli {

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned char byte = 0;
        const char* const digits = text.data() + at + 1;
        const bool isEscape =
            text[at] == '%' && at + 2 < text.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        decoded += isEscape ? static_cast<char>(byte) : text[at];
        if (isEscape) at += 2;
    }
    return decoded;
}

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
