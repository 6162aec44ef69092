// SPDX-License-Identifier: MIT
#pragma once

#include "cli/arguments.h"

namespace tavrin::cli {

// Throw `UsageError` where something would be written over a document that is read, or over what belongs to it, also
// through a link.
void refuseToOverwriteInputs(const RenderArguments& arguments);
void refuseToOverwriteInputs(const MatrixArguments& arguments);
void refuseToOverwriteInputs(const LinesArguments& arguments);
void refuseToOverwriteInputs(const SnapshotArguments& arguments);
/// The other verbs write no file that a command line names, or mend their documents on purpose.
inline void refuseToOverwriteInputs(const DocumentArguments&) {}

}  // namespace tavrin::cli
