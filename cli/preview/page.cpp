#include "cli/preview/page.h"

#include <array>
#include <cstddef>
#include <random>

// The bundler's files, taken in as they are.
#define TAVRIN_PAGE_FILE(name, file)                                                                          \
    __asm__(".section .rodata\n.global tavrin_page_" #name                                                    \
            "\n"                                                                                              \
            "tavrin_page_" #name ":\n.incbin \"" TAVRIN_PAGE_FOLDER "/" file "\"\n.global tavrin_page_" #name \
            "_end\ntavrin_page_" #name "_end:\n.byte 0\n.previous");                                          \
    extern "C" const char tavrin_page_##name[];                                                               \
    extern "C" const char tavrin_page_##name##_end[]

TAVRIN_PAGE_FILE(html, "index.html");
TAVRIN_PAGE_FILE(script, "preview.js");
TAVRIN_PAGE_FILE(style, "preview.css");

namespace tavrin::cli {
namespace {

constexpr std::string_view placeholder = "NONCE";

std::string_view between(const char* begin, const char* end) { return {begin, static_cast<std::size_t>(end - begin)}; }

}  // namespace

const std::string_view Page::html = between(tavrin_page_html, tavrin_page_html_end);
const std::string_view Page::script = between(tavrin_page_script, tavrin_page_script_end);
const std::string_view Page::style = between(tavrin_page_style, tavrin_page_style_end);

std::string pageWithNonce(std::string_view nonce) {
    std::string page(Page::html);
    for (std::size_t at = page.find(placeholder); at != std::string::npos; at = page.find(placeholder, at))
        page.replace(at, placeholder.size(), nonce);
    return page;
}

std::string newNonce() {
    constexpr std::string_view digits = "0123456789abcdef";
    std::random_device random;
    std::string nonce;
    for (int i = 0; i < 32; ++i) nonce += digits[random() % digits.size()];
    return nonce;
}

}  // namespace tavrin::cli
