#pragma once

#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/url.h"

namespace tavrin {

class Context;

/// The address that a document names, as the host's converter changes it; none for a text that is no address.
[[nodiscard]] std::optional<URL> convertedLink(std::string_view text, const Context& context);

}  // namespace tavrin
