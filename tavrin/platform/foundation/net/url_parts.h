// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace tavrin {

/// The parts of a URI reference, without what separates them; the views look into its text. A part that is not there is
/// none, one that is there may be empty.
struct URLParts {
    std::optional<std::string_view> scheme = std::nullopt;
    std::optional<std::string_view> authority = std::nullopt;
    std::string_view path = {};
    std::optional<std::string_view> query = std::nullopt;
    std::optional<std::string_view> fragment = std::nullopt;
};

/// What an authority is made of.
struct AuthorityParts {
    std::optional<std::string_view> user = std::nullopt;
    /// With the brackets of an IPv6 address.
    std::string_view host = {};
    std::optional<std::string_view> port = std::nullopt;
};

/// The scheme alone, which costs the same however long the text is.
[[nodiscard]] std::optional<std::string_view> schemeOf(std::string_view text);

/// Takes any text apart as RFC 3986, appendix B, does.
[[nodiscard]] URLParts urlParts(std::string_view text);

/// The user ends at the last "@", the host at the first ":" outside of brackets.
[[nodiscard]] AuthorityParts authorityParts(std::string_view authority);

}  // namespace tavrin
