// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/values/dsl_value.h"

namespace tavrin {

class Context;

/// The address that a property gives; none for a text that is no address, and for an expression that no model resolved,
/// though its braces could be percent-encoded.
[[nodiscard]] std::optional<URL> addressOf(const LosslessDSLValue<SharedText>& url);
[[nodiscard]] std::optional<URL> addressOf(const LosslessDSLValue<std::optional<SharedText>>& url);

/// The address that a property gives, as the host's converter changes it.
[[nodiscard]] std::optional<URL> convertedLink(const LosslessDSLValue<SharedText>& url, const Context& context);

}  // namespace tavrin
