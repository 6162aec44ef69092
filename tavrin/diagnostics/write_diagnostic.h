// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin {

/// Writes a way as an array of its keys and indices.
void write(const CodingPath& path, JSONWriter& writer);

/// Writes the members of one diagnostic, in the form of `toJSON`.
void writeMembers(const Diagnostic& diagnostic, JSONWriter& writer);

/// Writes one diagnostic as an object of these.
void write(const Diagnostic& diagnostic, JSONWriter& writer);

}  // namespace tavrin
