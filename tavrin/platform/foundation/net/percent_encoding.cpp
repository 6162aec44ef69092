// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/percent_encoding.h"

#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin {

bool isEscapeAt(std::string_view text, std::size_t at) {
    return text[at] == '%' && text.size() - at > 2 && isHexDigit(text[at + 1]) && isHexDigit(text[at + 2]);
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!isEscapeAt(text, at)) {
            decoded += text[at];
            continue;
        }
        decoded += static_cast<char>(hexValue(text[at + 1]) << 4 | hexValue(text[at + 2]));
        at += 2;
    }
    return decoded;
}

}  // namespace tavrin
