// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// A library of the system's that is opened when it is first needed; null where it is not installed. It is never
/// closed: its threads may be at work until the very end. What it links itself comes before what the process has under
/// the same names, since some that load this library carry a TLS of their own.
[[nodiscard]] void* openSystemLibrary(const char* name);

}  // namespace tavrin
