// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/serve/hmac.h"
#include "tavrin/platform/foundation/time/date.h"

namespace tavrin::cli {

/// What is to be said of a request's signature.
enum class SignatureVerdict : unsigned char {
    right,
    missing,  ///< `s` is not the last member of the query
    wrong,    ///< no key makes it, or what is signed cannot be followed
    expired,
};

/// Why a request is refused, for people; empty for a right signature.
[[nodiscard]] std::string_view reasonOf(SignatureVerdict verdict);

/// The keys that sign the addresses of pictures, so that who has no key can ask only for what was signed.
///
/// A signature is the last member of the query, `s`: the HMAC-SHA-256 of all bytes of path and query before `&s=`, or
/// `?s=`, in base64url without padding. Members named `expires`, seconds since 1970, are signed with the rest; the
/// address holds until the earliest of them. Names of members are not percent-encoded. Immutable and thread-safe.
class SigningKeys {
public:
    static constexpr std::size_t maximumKeys = 64;
    static constexpr std::size_t maximumFileBytes = std::size_t{64} << 10;

    /// One key a line: its bytes, without the CR of a line that ends so. Lines that are empty, or nothing but blanks,
    /// count for nothing. `name` is what messages call the text. Throws `IOError` for no key, too many and too long a
    /// text.
    SigningKeys(std::string_view text, const std::string& name);
    /// Those of a file; "-" is standard input. Throws `IOError`.
    [[nodiscard]] static SigningKeys read(const std::string& path);

    /// What is to be said of a path and its query. How long that takes does not tell how much of a signature is right,
    /// nor by which key.
    [[nodiscard]] SignatureVerdict verdict(std::string_view target, Date now) const;

    /// A path and its query with the signature of the first key behind. Throws `UsageError` for what no request can
    /// have as it is, or has a signature already.
    [[nodiscard]] std::string sign(std::string_view target, std::optional<std::uint64_t> expires = std::nullopt) const;

private:
    [[nodiscard]] bool isMadeByAny(std::string_view text, std::string_view signature) const;

    std::vector<HMACKey> keys_;
};

}  // namespace tavrin::cli
