// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

#include "cli/http/http_head.h"
#include "cli/serve/served_picture.h"
#include "cli/serve/served_request.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"

// A request to the server of pictures as its bytes come: its head, and what the parts mean wherever they might stand.

namespace {

template <class Read>
void tried(const Read& read) {
    try {
        read();
    } catch (const std::exception&) {  // an error is an answer; a crash is none
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrin::cli;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    tavrin::DrawingOptions served;
    served.widget.budget = tavrin::RenderBudget::strangers();
    const HeadEnd end = findHeadEnd(bytes, 0);
    if (end.searched > size || (end.isWhole && end.isBroken)) std::abort();
    if (end.isWhole) (void)headFault(bytes.substr(0, end.searched), {});
    const std::string_view body = end.isWhole ? bytes.substr(end.searched) : bytes;
    tried([&] { (void)readPosted(body, served); });
    const std::string_view line = bytes.substr(0, bytes.find('\n'));
    const std::string_view path = line.substr(0, line.find('?'));
    const std::string_view query = path.size() == line.size() ? std::string_view() : line.substr(path.size() + 1);
    tried([&] { (void)readWidgetAddress(tavrin::percentDecoded(path), query, served); });
    (void)matchesTag(line, "\"tag\"");
    return 0;
}
