// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

#include "cli/serve/signature.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/time/date.h"

namespace tavrin::cli {
namespace {

/// Seconds since 1970, which a moment that lies within a second is rounded up to.
std::uint64_t readExpiry(const std::string& text) {
    if (const auto seconds = intFromText<std::uint64_t>(text)) return *seconds;
    const auto moment = Date::parseRFC3339(text);
    if (!moment || moment->secondsSince1970 < 0)
        throw UsageError("--expires takes a date and time such as 2026-12-01T00:00:00Z, or seconds since 1970, not '" +
                         text + "'");
    return static_cast<std::uint64_t>(std::ceil(moment->secondsSince1970));
}

}  // namespace

std::string signedPaths(const Command& command) {
    if (command.operands.empty())
        throw UsageError("which path? `tavrin sign PATH` wants one such as /v1/widgets/weather.png");
    const std::string* const keyFile = command.find("--key-file");
    if (!keyFile) throw UsageError("with which key? `tavrin sign` wants --key-file FILE");
    const std::string* const expiry = command.find("--expires");
    const auto expires = expiry ? std::optional(readExpiry(*expiry)) : std::nullopt;
    const SigningKeys keys = SigningKeys::read(*keyFile);
    std::string text;
    for (const std::string& path : command.operands) text += keys.sign(path, expires) + "\n";
    return text;
}

}  // namespace tavrin::cli
