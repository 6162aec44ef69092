// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// Bytes as base64 with its usual digits (RFC 4648), filled up with "=".
[[nodiscard]] std::string base64(std::string_view bytes);

}  // namespace tavrin
