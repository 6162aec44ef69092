// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/markup_text.h"

namespace tavrin {

std::string markupText(std::string_view text) {
    std::string safe;
    for (const char c : text) {
        switch (c) {
            case '&': safe += "&amp;"; break;
            case '<': safe += "&lt;"; break;
            case '>': safe += "&gt;"; break;
            case '"': safe += "&quot;"; break;
            default: safe += c;
        }
    }
    return safe;
}

}  // namespace tavrin
