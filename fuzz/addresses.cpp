// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tavrin/platform/foundation/net/data_url.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/net/public_address.h"
#include "tavrin/platform/foundation/net/url.h"

// A text as an address: what it is made of, and that it stays what it is when it is parsed once more.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    (void)tavrin::isPublicAddress(text);
    (void)tavrin::percentDecoded(text);
    const auto url = tavrin::URL::parse(text);
    if (!url) return 0;
    const auto again = tavrin::URL::parse(url->string());
    if (!again || *again != *url) std::abort();
    (void)url->scheme();
    (void)url->path();
    (void)url->filePath();
    (void)url->shortened();
    (void)tavrin::dataOf(*url);
    (void)tavrin::isPublicAddress(url->host());
    (void)tavrin::URL::parse(url->appendingPathComponent(text).string());
    return 0;
}
