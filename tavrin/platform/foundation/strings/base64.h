// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// Bytes as base64 with its usual digits (RFC 4648), filled up with "=".
[[nodiscard]] std::string base64(std::string_view bytes);

/// Bytes as base64url, which has "-" and "_" among its digits, and is not filled up.
[[nodiscard]] std::string base64URL(std::string_view bytes);

/// The bytes that base64url stands for, which has "-" and "_" among its digits; what fills it up may be there or not.
/// None for what is no base64url.
[[nodiscard]] std::optional<std::string> fromBase64URL(std::string_view text);

}  // namespace tavrin
