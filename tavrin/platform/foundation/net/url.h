// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tavrin {

/// A URI reference that RFC 3986 allows. A value, cheap to copy; thread-safe as any value.
class URL {
public:
    /// `text` as a URL (`a` and `relative/path` are URLs), kept as it is written where RFC 3986 allows it. What it does
    /// not allow is percent-encoded in UTF-8 (a blank becomes `%20`, a `%` that begins no escape `%25`); a host that is
    /// not ASCII becomes the name it has for IDNA (`xn--…`). None for an empty text, a colon in the first segment of a
    /// relative reference (`not a url:`), a port that is no number, a host with brackets that is no IPv6 address or
    /// that IDNA refuses, and what is not UTF-8.
    [[nodiscard]] static std::optional<URL> parse(std::string_view text);

    /// The `file://` URL of `path`, percent-encoded; a relative path is taken from the working directory.
    [[nodiscard]] static URL fileURL(const std::string& path);

    [[nodiscard]] const std::string& string() const { return *text_; }
    /// In lower case; empty in a relative reference.
    [[nodiscard]] std::string scheme() const;
    /// As written, without user, port and the brackets of an IPv6 address; empty when there is none.
    [[nodiscard]] std::string host() const;
    /// As written, that is still percent-encoded.
    [[nodiscard]] std::string path() const;
    [[nodiscard]] bool isFile() const;
    /// Whether what it leads to stands in it: `dataOf` reads that.
    [[nodiscard]] bool isData() const;

    /// The percent-decoded path of a `file:` URL on this machine; empty for any other URL.
    [[nodiscard]] std::string filePath() const;

    /// As a message shows it, where a picture may stand in it: its first 200 characters and "…".
    [[nodiscard]] std::string shortened() const;

    /// This URL with `component` percent-encoded behind its path, one "/" between; "/" in `component` is kept.
    [[nodiscard]] URL appendingPathComponent(std::string_view component) const;

    friend bool operator==(const URL& a, const URL& b) { return a.text_ == b.text_ || *a.text_ == *b.text_; }

private:
    explicit URL(std::string text) : text_(std::make_shared<const std::string>(std::move(text))) {}

    std::shared_ptr<const std::string> text_;  // shared: a picture may stand in it
};

}  // namespace tavrin

template <>
struct std::hash<tavrin::URL> {
    std::size_t operator()(const tavrin::URL& url) const noexcept { return std::hash<std::string>{}(url.string()); }
};
