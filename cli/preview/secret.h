// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin::cli {

/// 128 bits of the kernel's as 32 hexadecimal digits: what no one can guess. Throws `IOError`.
[[nodiscard]] std::string newSecret();

/// Whether a text is the secret. How long that takes does not tell how much of it is right.
[[nodiscard]] bool isSecret(std::string_view text, std::string_view secret);

}  // namespace tavrin::cli
