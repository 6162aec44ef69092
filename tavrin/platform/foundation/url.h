#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// An RFC 3986 URI reference, kept as it was written. A value; thread-safe as any value.
class URL {
public:
    /// `text` as a URL when it is a non-empty URI reference (`a` and `relative/path` are), else none. Blanks, unescaped
    /// non-ASCII characters, a bad port or bracket are refused.
    [[nodiscard]] static std::optional<URL> parse(std::string_view text);

    /// The `file://` URL of `path`, percent-encoded; a relative path is taken from the working directory.
    [[nodiscard]] static URL fileURL(const std::filesystem::path& path);

    [[nodiscard]] const std::string& string() const { return text_; }
    /// In lower case; empty in a relative reference.
    [[nodiscard]] std::string scheme() const;
    /// As written, without user, port and the brackets of an IPv6 address; empty when there is none.
    [[nodiscard]] std::string host() const;
    /// As written, that is still percent-encoded.
    [[nodiscard]] std::string path() const;
    [[nodiscard]] bool isFile() const;

    /// The percent-decoded path of a `file:` URL on this machine; empty for any other URL.
    [[nodiscard]] std::filesystem::path filePath() const;

    /// This URL with `component` percent-encoded behind its path, one "/" between; "/" in `component` is kept.
    [[nodiscard]] URL appendingPathComponent(std::string_view component) const;

    friend bool operator==(const URL&, const URL&) = default;

private:
    explicit URL(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

}  // namespace tavrin

template <>
struct std::hash<tavrin::URL> {
    std::size_t operator()(const tavrin::URL& url) const noexcept { return std::hash<std::string>{}(url.string()); }
};
