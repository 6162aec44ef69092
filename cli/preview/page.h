// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin::cli {

/// The page as it was bundled into the program.
struct Page {
    static const std::string_view html;
    static const std::string_view script;
    static const std::string_view style;
};

/// The page's HTML, whose scripts and styles carry a nonce.
[[nodiscard]] std::string pageWithNonce(std::string_view nonce);

}  // namespace tavrin::cli
