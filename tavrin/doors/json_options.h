// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/doors/option_reader.h"
#include "tavrin/json/json_text.h"

namespace tavrin {

/// Reads the members of a JSON object as options, by their names in camel case. A size is an array of two numbers, too;
/// a budget an object of `profile`, `steps`, `pixels`, `bytes` and `seconds`, too; a member that is null counts as one
/// that is not there. The reader must have types of its own. Throws `OptionError` for what cannot be followed, and for
/// what is no object.
void readOptions(OptionReader& reader, const JSONElement& options);

}  // namespace tavrin
