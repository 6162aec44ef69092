// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin {

/// Writes one diagnostic as an object, in the form of `toJSON`.
void write(const Diagnostic& diagnostic, JSONWriter& writer);

}  // namespace tavrin
