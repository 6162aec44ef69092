// SPDX-License-Identifier: MIT
#include "cli/preview/page.h"

#include "cli/embedded_file.h"

// The bundler's files.
TAVRIN_EMBEDDED_FILE(pageHtml, TAVRIN_PAGE_FOLDER "/index.html")
TAVRIN_EMBEDDED_FILE(pageScript, TAVRIN_PAGE_FOLDER "/preview.js")
TAVRIN_EMBEDDED_FILE(pageStyle, TAVRIN_PAGE_FOLDER "/preview.css")

namespace tavrin::cli {
namespace {

constexpr std::string_view placeholder = "NONCE";

}  // namespace

const std::string_view Page::html = pageHtml();
const std::string_view Page::script = pageScript();
const std::string_view Page::style = pageStyle();

std::string pageWithNonce(std::string_view nonce) {
    std::string page(Page::html);
    for (std::size_t at = page.find(placeholder); at != std::string::npos; at = page.find(placeholder, at))
        page.replace(at, placeholder.size(), nonce);
    return page;
}

}  // namespace tavrin::cli
