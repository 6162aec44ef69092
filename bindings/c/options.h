// SPDX-License-Identifier: MIT
#pragma once

#include "bindings/c/tavrin/tavrin_c.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::c {

/// What a struct of options says; null says nothing. Throws `OptionError`.
[[nodiscard]] DrawingOptions readOptions(const tavrin_options* options);

/// What it says of how a picture is written. Throws `OptionError`.
[[nodiscard]] PictureOptions readPictureOptions(const tavrin_options* options);

}  // namespace tavrin::c
