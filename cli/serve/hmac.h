// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include <sha256.h>

namespace tavrin::cli {

/// A key of HMAC-SHA-256 (RFC 2104), made ready: a code then costs two short digests and what the text is long.
/// Immutable and thread-safe.
class HMACKey {
public:
    explicit HMACKey(std::string_view key);

    /// The 32 bytes of a text's code.
    [[nodiscard]] std::string code(std::string_view text) const;

private:
    // What has been digested once the padded key has been.
    SHA256_CTX inner_;
    SHA256_CTX outer_;
};

}  // namespace tavrin::cli
