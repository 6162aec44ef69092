// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace tavrin {

/// Lets the kernel hand over memory that is about to be written all at once; else each of its pages, as it is touched,
/// takes as long as drawing it. Does nothing for little memory, and after a process's first pictures: then there is
/// memory that was used before. Any thread.
void takeAtOnce(void* memory, std::size_t bytes);

}  // namespace tavrin
