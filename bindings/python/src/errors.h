// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin::python {

/// From here on what the library throws becomes the package's errors, and what options are blamed for a TypeError or
/// ValueError.
void translateErrors();

}  // namespace tavrin::python
