#include "tavrin/platform/foundation/url.h"

#include <algorithm>
#include <system_error>

#include <uriparser/Uri.h>

namespace tavrin {
namespace {

/// A URI reference taken apart; the views look into its text.
struct Parts {
    std::string_view scheme;
    std::string_view authority;
    std::string_view path;
};

/// Takes a well-formed reference apart as RFC 3986, appendix B, does.
Parts split(std::string_view text) {
    Parts parts;
    const std::size_t colon = text.find_first_of(":/?#");
    if (colon != std::string_view::npos && text[colon] == ':') {
        parts.scheme = text.substr(0, colon);
        text.remove_prefix(colon + 1);
    }
    if (text.starts_with("//")) {
        text.remove_prefix(2);
        parts.authority = text.substr(0, text.find_first_of("/?#"));
        text.remove_prefix(parts.authority.size());
    }
    parts.path = text.substr(0, text.find_first_of("?#"));
    return parts;
}

bool isLetterOrDigit(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

/// Percent-encodes what a path may not hold; also ":", which could end a scheme.
std::string percentEncoded(std::string_view path) {
    constexpr std::string_view hex = "0123456789ABCDEF";
    constexpr std::string_view plain = "/-._~!$&'()*+,;=@";
    std::string encoded;
    for (const char c : path) {
        if (isLetterOrDigit(c) || plain.find(c) != std::string_view::npos) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', hex[byte >> 4], hex[byte & 0xF]};
    }
    return encoded;
}

int hexDigit(char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; }

std::string percentDecoded(std::string_view path) {
    std::string decoded;
    for (std::size_t at = 0; at < path.size(); ++at) {
        const bool isEncoded = path[at] == '%' && at + 2 < path.size();
        decoded += isEncoded ? static_cast<char>(hexDigit(path[at + 1]) * 16 + hexDigit(path[at + 2])) : path[at];
        if (isEncoded) at += 2;
    }
    return decoded;
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return lower;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
    if (text.empty()) return std::nullopt;
    UriUriA uri;
    const char* errorPosition = nullptr;
    if (uriParseSingleUriExA(&uri, text.data(), text.data() + text.size(), &errorPosition) != URI_SUCCESS)
        return std::nullopt;
    uriFreeUriMembersA(&uri);
    return URL(std::string(text));
}

URL URL::fileURL(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return URL("file://" + percentEncoded((error ? path : absolute).string()));
}

std::string URL::scheme() const { return lowerCase(split(text_).scheme); }

std::string URL::host() const {
    std::string_view host = split(text_).authority;
    host.remove_prefix(host.rfind('@') + 1);  // npos + 1 is 0
    if (host.starts_with('[')) return std::string(host.substr(1, host.find(']') - 1));
    return std::string(host.substr(0, host.find(':')));
}

std::string URL::path() const { return std::string(split(text_).path); }

bool URL::isFile() const { return scheme() == "file"; }

std::filesystem::path URL::filePath() const {
    const std::string machine = lowerCase(host());
    if (!isFile() || !(machine.empty() || machine == "localhost")) return {};
    std::string path = percentDecoded(split(text_).path);
    if (path.find('\0') != std::string::npos) return {};
    return path;
}

URL URL::appendingPathComponent(std::string_view component) const {
    component.remove_prefix(std::min(component.find_first_not_of('/'), component.size()));
    const std::string_view path = split(text_).path;
    const auto end = static_cast<std::size_t>(path.data() + path.size() - text_.data());
    std::string text = text_;
    text.insert(end, (path.ends_with('/') ? "" : "/") + percentEncoded(component));
    return URL(std::move(text));
}

}  // namespace tavrin
