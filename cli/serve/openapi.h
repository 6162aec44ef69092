// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tavrin::cli {

/// What the server answers, as OpenAPI 3.1 describes it: made of the options that all doors share and of `routeTable`.
[[nodiscard]] std::string openapiJSON();

}  // namespace tavrin::cli
