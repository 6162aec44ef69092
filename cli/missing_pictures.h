#pragma once

#include <string>
#include <vector>

#include "tavrin/platform/foundation/fetch_policy.h"
#include "tavrin/platform/paint/image_renderer.h"

namespace tavrin::cli {

/// Notes how many of the pictures that a widget shows could not be had, where there are any.
void noteMissingPictures(ImageRenderer& renderer, FetchPolicy policy, std::vector<std::string>& notes);

}  // namespace tavrin::cli
