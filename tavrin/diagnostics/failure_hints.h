// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/diagnostics/diagnostic.h"
#include "tavrin/diagnostics/rule.h"
#include "tavrin/diagnostics/written_document.h"

namespace tavrin {

/// Adds to the error of a document what was probably meant, behind the error's own message, as a fix where that is
/// safe, and moves it to the value that is to blame.
void addHints(Rule rule, const WrittenDocument& document, Diagnostic& error);

}  // namespace tavrin
