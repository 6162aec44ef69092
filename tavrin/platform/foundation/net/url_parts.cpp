// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/url_parts.h"

#include <algorithm>
#include <cstddef>

namespace tavrin {
namespace {

/// Takes what stands before the first of `ends` off a text.
std::string_view takeUntil(std::string_view& text, std::string_view ends) {
    const std::string_view front = text.substr(0, text.find_first_of(ends));
    text.remove_prefix(front.size());
    return front;
}

}  // namespace

std::optional<std::string_view> schemeOf(std::string_view text) {
    const std::size_t colon = text.find_first_of(":/?#");
    if (colon == std::string_view::npos || colon == 0 || text[colon] != ':') return std::nullopt;
    return text.substr(0, colon);
}

URLParts urlParts(std::string_view text) {
    URLParts parts;
    parts.scheme = schemeOf(text);
    if (parts.scheme) text.remove_prefix(parts.scheme->size() + 1);
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        parts.authority = takeUntil(text, "/?#");
    }
    parts.path = takeUntil(text, "?#");
    if (text.starts_with('?')) {
        text.remove_prefix(1);
        parts.query = takeUntil(text, "#");
    }
    if (text.starts_with('#')) parts.fragment = text.substr(1);
    return parts;
}

AuthorityParts authorityParts(std::string_view authority) {
    AuthorityParts parts;
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
        parts.user = authority.substr(0, at);
        authority.remove_prefix(at + 1);
    }
    const std::size_t bracket = authority.starts_with('[') ? std::min(authority.find(']'), authority.size()) : 0;
    const std::size_t colon = authority.find(':', bracket);
    parts.host = authority.substr(0, colon);
    if (colon != std::string_view::npos) parts.port = authority.substr(colon + 1);
    return parts;
}

}  // namespace tavrin
