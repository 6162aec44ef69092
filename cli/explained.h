// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "cli/arguments.h"
#include "cli/input.h"
#include "tavrin/dsl/view_origins.h"
#include "tavrin/platform/paint/image_renderer.h"

namespace tavrin::cli {

/// What `tavrin explain` prints: an outline, or the views at the arguments' path in sentences; or either as JSON.
/// Throws `TavrinError` of kind "Explain" for a path that names nothing that is drawn.
[[nodiscard]] std::string explained(const Arguments& arguments, const Source& document, ImageRenderer& renderer,
                                    const ViewOrigins& origins);

}  // namespace tavrin::cli
