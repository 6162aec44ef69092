// SPDX-License-Identifier: MIT
#pragma once

#include "cli/arguments.h"

namespace tavrin::cli {

/// Throws `UsageError` where something would be written over a document or model that is read, also through a link.
void refuseToOverwriteInputs(const Arguments& arguments);

}  // namespace tavrin::cli
