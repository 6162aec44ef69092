// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "cli/http/http_message.h"
#include "cli/new/new_widget.h"
#include "cli/preview/drawing_messages.h"
#include "cli/preview/request_guard.h"
#include "cli/project/widget_files.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"

// A request to the preview, line by line: its target, three headers, and the rest as its body.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrin::cli;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const auto line = [&rest] {
        const std::string_view text = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(text.size() == rest.size() ? text.size() : text.size() + 1);
        return std::string(text);
    };
    HTTPRequest request{.method = "POST", .path = tavrin::percentDecoded(line()), .query = line()};
    request.host = line();
    request.origin = line();
    request.contentType = line();
    request.body = std::string(rest);
    const auto attempt = [](const auto& work) {
        try {
            work();
        } catch (const std::exception&) {  // an error is an answer; a crash is none
        }
    };
    attempt([&] {
        (void)refusal(request, 8080, "0123456789abcdef0123456789abcdef");
        (void)request.parameter("path");
    });
    attempt([&] { (void)drawingOf(RequestFields(request.body)); });
    attempt([&] { (void)isLookedAt(stemOfNew(RequestFields(request.body).text("name"))); });
    return 0;
}
