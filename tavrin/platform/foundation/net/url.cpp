// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/url.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <uriparser/Uri.h>

#include "tavrin/platform/foundation/net/idna_library.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/net/url_parts.h"
#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin {
namespace {

bool isReference(std::string_view text) {
    UriUriA uri;
    const char* errorPosition = nullptr;
    if (uriParseSingleUriExA(&uri, text.data(), text.data() + text.size(), &errorPosition) != URI_SUCCESS) return false;
    uriFreeUriMembersA(&uri);
    return true;
}

constexpr std::string_view subDelimiters = "!$&'()*+,;=";
constexpr PlainInURL inUser{subDelimiters, ":"};
constexpr PlainInURL inHost{subDelimiters};
constexpr PlainInURL inPath{subDelimiters, "/:@"};
/// A path that no URL has been made of yet: ":" could end a scheme.
constexpr PlainInURL inNewPath{subDelimiters, "/@"};
constexpr PlainInURL inQuery{subDelimiters, "/:@?"};

/// A part of a reference with everything else, and each "%" that begins no escape, percent-encoded.
std::string encodedPart(std::string_view part, const PlainInURL& isPlain) {
    return percentEncoded(part, [&](const char& c) {
        return isPlain(c) || isEscapeAt(part, static_cast<std::size_t>(&c - part.data()));
    });
}

/// A host as a reference may hold it; none where it can not be made one.
std::optional<std::string> encodedHost(std::string_view host) {
    // What stands in brackets must be an address of IPv6, and brackets stand nowhere else.
    if (host.find_first_of("[]") != std::string_view::npos) return std::string(host);
    const auto isASCII = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::ranges::all_of(host, isASCII)) return encodedPart(host, inHost);
    std::optional<std::string> ascii = asciiHost(host);
    // The mapping makes ordinary ones of wide "/", ":" and the like, with which another host would be meant.
    if (!ascii || ascii->empty() || !std::all_of(ascii->begin(), ascii->end(), inHost)) return std::nullopt;
    return ascii;
}

/// A reference with what RFC 3986 does not allow encoded in each part; none where a host can not be. What no encoding
/// helps, a scheme or a port, is as it was.
std::optional<std::string> encodedReference(std::string_view text) {
    const URLParts parts = urlParts(text);
    std::string encoded;
    encoded.reserve(text.size() + text.size() / 8);
    if (parts.scheme) encoded.append(*parts.scheme).append(":");
    if (parts.authority) {
        const auto [user, host, port] = authorityParts(*parts.authority);
        const std::optional<std::string> allowed = encodedHost(host);
        if (!allowed) return std::nullopt;
        encoded += "//";
        if (user) encoded.append(encodedPart(*user, inUser)).append("@");
        encoded += *allowed;
        if (port) encoded.append(":").append(*port);
    }
    encoded += encodedPart(parts.path, inPath);
    if (parts.query) encoded.append("?").append(encodedPart(*parts.query, inQuery));
    if (parts.fragment) encoded.append("#").append(encodedPart(*parts.fragment, inQuery));
    return encoded;
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), lowerCase);
    return lower;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
    // 1. What RFC 3986 allows is a URL as it is written; nothing is not, though it allows that, too.
    if (text.empty()) return std::nullopt;
    if (isReference(text)) return URL(std::string(text));
    // 2. Else what it does not allow is encoded in each part.
    if (!isValidUtf8(text)) return std::nullopt;
    std::optional<std::string> encoded = encodedReference(text);
    // 3. What is still not allowed can not be mended: a colon before any scheme, a port, a bracket.
    if (!encoded || !isReference(*encoded)) return std::nullopt;
    return URL(*std::move(encoded));
}

URL URL::fileURL(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return URL("file://" + percentEncoded(error ? path : absolute.string(), inNewPath));
}

std::string URL::scheme() const { return inLowerCase(schemeOf(string()).value_or("")); }

std::string URL::host() const {
    std::string_view host = authorityParts(urlParts(string()).authority.value_or("")).host;
    if (host.starts_with('[')) host = host.substr(1, host.size() - 2);
    return std::string(host);
}

std::string URL::path() const { return std::string(urlParts(string()).path); }

bool URL::isFile() const { return scheme() == "file"; }

bool URL::isData() const { return scheme() == "data"; }

std::string URL::filePath() const {
    const std::string machine = inLowerCase(host());
    if (!isFile() || !(machine.empty() || machine == "localhost")) return {};
    std::string path = percentDecoded(urlParts(string()).path);
    if (path.find('\0') != std::string::npos) return {};
    return path;
}

std::string URL::shortened() const {
    constexpr std::size_t longest = 200;
    return string().size() > longest ? string().substr(0, longest) + "…" : string();
}

URL URL::appendingPathComponent(std::string_view component) const {
    component.remove_prefix(std::min(component.find_first_not_of('/'), component.size()));
    const std::string_view path = urlParts(string()).path;
    const auto end = static_cast<std::size_t>(path.data() + path.size() - string().data());
    std::string text = string();
    text.insert(end, (path.ends_with('/') ? "" : "/") + percentEncoded(component, inNewPath));
    return URL(std::move(text));
}

}  // namespace tavrin
