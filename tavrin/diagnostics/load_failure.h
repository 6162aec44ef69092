// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

#include "tavrin/diagnostics/findings.h"
#include "tavrin/diagnostics/written_document.h"

namespace tavrin {

/// Adds what loading or drawing threw as an error, in place of the warnings that foresaw it, whose fix it takes.
/// `document` may be null, where the text is no JSON.
void addFailure(const std::exception_ptr& failure, const WrittenDocument* document, const JSONOutline* model,
                Findings& findings);

/// Adds to the error of a document what was probably meant, behind the error's own message, as a fix where that is
/// safe, and moves it to the value that is to blame.
void addHints(Rule rule, const WrittenDocument& document, Diagnostic& error);

}  // namespace tavrin
