// SPDX-License-Identifier: MIT
#include "cli/http/http_answer_head.h"

#include <array>
#include <ctime>
#include <string_view>

#include <boost/beast/http/status.hpp>

#include "cli/http/http_status.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

void addField(std::string& head, std::string_view name, std::string_view value) {
    head.append(name).append(": ").append(value).append("\r\n");
}

std::string statusLine(unsigned status) {
    const auto reason = boost::beast::http::obsolete_reason(boost::beast::http::int_to_status(status));
    return "HTTP/1.1 " + std::to_string(status) + " " + std::string(reason.data(), reason.size()) + "\r\n";
}

/// The moment as HTTP writes it, whatever the process's language is.
std::string httpDate(std::time_t moment) {
    constexpr std::array<std::string_view, 7> days{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array<std::string_view, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::tm parts{};
    ::gmtime_r(&moment, &parts);
    const auto two = [](int number) { return std::string(number < 10 ? "0" : "") + std::to_string(number); };
    std::string text(days.at(static_cast<std::size_t>(parts.tm_wday)));
    text.append(", ").append(two(parts.tm_mday)).append(" ");
    text.append(months.at(static_cast<std::size_t>(parts.tm_mon)));
    text.append(" ").append(std::to_string(parts.tm_year + 1900)).append(" ").append(two(parts.tm_hour));
    return text.append(":").append(two(parts.tm_min)).append(":").append(two(parts.tm_sec)).append(" GMT");
}

std::string commonHead(const HTTPResponse& response) {
    std::string head = statusLine(response.status);
    addField(head, "Date", httpDate(std::time(nullptr)));
    if (!response.contentType.empty()) addField(head, "Content-Type", response.contentType);
    if (!response.allow.empty()) addField(head, "Allow", response.allow);
    for (const auto& [name, value] : response.headers) addField(head, name, value);
    return head;
}

}  // namespace

std::string answerHead(const HTTPResponse& response, std::size_t bodyBytes, bool goesOn) {
    std::string head = commonHead(response);
    const bool hasNoBody = response.status == http_status::noContent || response.status == http_status::notModified;
    if (!hasNoBody) addField(head, "Content-Length", std::to_string(bodyBytes));
    if (!goesOn) addField(head, "Connection", "close");
    return head + "\r\n";
}

std::string eventStreamHead(const HTTPResponse& response) {
    std::string head = commonHead(response);
    addField(head, "Connection", "close");
    return head + "\r\n";
}

}  // namespace tavrin::cli
