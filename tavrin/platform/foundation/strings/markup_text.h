// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// A text as it may stand between the tags of HTML and XML, and in attributes between double quotes.
[[nodiscard]] std::string markupText(std::string_view text);

}  // namespace tavrin
