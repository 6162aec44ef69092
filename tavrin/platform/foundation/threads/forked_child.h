// SPDX-License-Identifier: MIT
#pragma once

#include <pthread.h>

namespace tavrin {

/// Has something begin anew in every child that the process forks from now on. There only the thread that forked goes
/// on: what other threads were to do never ends, and what they held is never given back. Returns true.
inline bool beginAnewInChildren(void (*begin)()) { return ::pthread_atfork(nullptr, nullptr, begin) == 0; }

}  // namespace tavrin
