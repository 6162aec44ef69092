// SPDX-License-Identifier: MIT
#include "cli/http/http_head.h"

#include <algorithm>
#include <array>

#include "cli/http/http_status.h"
#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view lineEnd = "\r\n";

bool isVisible(char c) { return c > ' ' && c < '\x7f'; }

bool isTokenCharacter(char c) {
    return isVisible(c) && std::string_view("\"(),/:;<=>?@[\\]{}").find(c) == std::string_view::npos;
}

bool isToken(std::string_view text) { return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter); }

/// What may stand in a value: no control character but the tab.
bool isValueCharacter(char c) { return isVisible(c) || c == ' ' || c == '\t' || static_cast<unsigned char>(c) >= 0x80; }

bool isSpaceOrTab(char c) { return c == ' ' || c == '\t'; }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpaceOrTab(text.front())) text.remove_prefix(1);
    while (!text.empty() && isSpaceOrTab(text.back())) text.remove_suffix(1);
    return text;
}

bool isWord(std::string_view text, std::string_view lowercase) {
    return std::equal(text.begin(), text.end(), lowercase.begin(), lowercase.end(),
                      [](char a, char b) { return lowerCase(a) == b; });
}

HTTPFault badRequest(std::string_view message) { return {http_status::badRequest, std::string(message)}; }

/// What the fields of a head say of its body and of whom it is for.
struct HeadFields {
    bool isOld = false;  ///< whether it is of HTTP/1.0
    int hosts = 0;
    int lengths = 0;
    int codings = 0;
};

std::optional<HTTPFault> requestLineFault(std::string_view line, const HTTPLimits& limits, HeadFields& fields) {
    const std::size_t first = line.find(' ');
    const std::size_t last = line.rfind(' ');
    if (first == std::string_view::npos || first == last) return badRequest("this is no HTTP request");
    const std::string_view target = line.substr(first + 1, last - first - 1);
    const std::string_view version = line.substr(last + 1);
    if (!isToken(line.substr(0, first)) || (version != "HTTP/1.1" && version != "HTTP/1.0"))
        return badRequest("this is no request of HTTP/1.1");
    if (target.size() > limits.target) return HTTPFault{http_status::targetTooLong, "the path and query are too long"};
    if (target.empty() || !std::all_of(target.begin(), target.end(), isVisible))
        return badRequest("the request's path has a character that must be escaped");
    fields.isOld = version == "HTTP/1.0";
    return std::nullopt;
}

std::optional<HTTPFault> fieldFault(std::string_view line, HeadFields& fields) {
    constexpr std::size_t mostDigits = 18;  // which any number of bytes has
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || !isToken(line.substr(0, colon)))
        return badRequest("a header is a name, a colon and a value on one line");
    const std::string_view name = line.substr(0, colon);
    const std::string_view value = trimmed(line.substr(colon + 1));
    if (!std::all_of(value.begin(), value.end(), isValueCharacter))
        return badRequest("a header has a control character");
    if (isWord(name, "host") && ++fields.hosts > 1) return badRequest("a request names one Host");
    if (isWord(name, "content-length")) {
        const bool isNumber = !value.empty() && value.size() <= mostDigits &&
                              std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
        if (++fields.lengths > 1 || !isNumber) return badRequest("a request has one Content-Length, a number");
    }
    if (isWord(name, "transfer-encoding") && (++fields.codings > 1 || !isWord(value, "chunked")))
        return badRequest("a request's Transfer-Encoding is chunked and nothing else");
    return std::nullopt;
}

}  // namespace

HeadEnd findHeadEnd(std::string_view bytes, std::size_t searched) {
    for (std::size_t at = bytes.find('\n', searched); at != std::string_view::npos; at = bytes.find('\n', at + 1)) {
        if (at == 0 || bytes[at - 1] != '\r') return {at, false, true};
        const bool isEmptyLine = at == 1 || (at >= 3 && bytes.substr(at - 3, 2) == lineEnd);
        if (isEmptyLine) return {at + 1, true, false};
    }
    return {bytes.size(), false, false};
}

std::optional<HTTPFault> headFault(std::string_view head, const HTTPLimits& limits) {
    if (head.size() > limits.head) return tooLongFault(head, limits);
    HeadFields fields;
    std::size_t end = head.find(lineEnd);
    if (auto fault = requestLineFault(head.substr(0, end), limits, fields)) return fault;
    for (;;) {
        head.remove_prefix(end + lineEnd.size());
        end = head.find(lineEnd);
        if (end == 0 || end == std::string_view::npos) break;
        if (auto fault = fieldFault(head.substr(0, end), fields)) return fault;
    }
    if (fields.hosts == 0 && !fields.isOld) return badRequest("a request names the Host that it is for");
    if (fields.codings > 0 && (fields.isOld || fields.lengths > 0))
        return badRequest("a request has a Content-Length or, from HTTP/1.1 on, a Transfer-Encoding");
    return std::nullopt;
}

HTTPFault tooLongFault(std::string_view begun, const HTTPLimits& limits) {
    if (begun.find(lineEnd) > limits.target) return {http_status::targetTooLong, "the path and query are too long"};
    return {http_status::headersTooLarge, "the request's headers are too large"};
}

}  // namespace tavrin::cli
