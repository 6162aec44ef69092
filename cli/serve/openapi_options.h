// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/doors/option.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {

/// The members of the JSON Schema of an option's value as a query has it, into an object that is open.
void writeOptionSchema(const Option& option, JSONWriter& out);

/// The schema of an object of all options that a request may have. Sizes may be pairs of numbers in it, and a budget an
/// object of its own.
void writeOptionsSchema(JSONWriter& out);

}  // namespace tavrin::cli
