// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tavrin::cli {

/// "; did you mean 'render'?" for a word that nearly is one of `known`, else nothing. Leading dashes don't count.
[[nodiscard]] std::string suggestion(std::string_view word, std::span<const std::string_view> known);

}  // namespace tavrin::cli
