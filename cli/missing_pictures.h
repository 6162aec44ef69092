// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "cli/arguments.h"
#include "tavrin/platform/paint/image_renderer.h"

namespace tavrin::cli {

/// Notes how many of the pictures that a widget shows could not be had, where there are any.
void noteMissingPictures(ImageRenderer& renderer, const Arguments& arguments, std::vector<std::string>& notes);

}  // namespace tavrin::cli
