// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "cli/arguments.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {

/// Notes how many of the pictures that a widget shows could not be had, where there are any.
void noteMissingPictures(Widget& widget, const DocumentArguments& arguments, std::vector<std::string>& notes);

}  // namespace tavrin::cli
