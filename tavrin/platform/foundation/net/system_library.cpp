// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/net/system_library.h"

#include <dlfcn.h>

namespace tavrin {
namespace {

#if !defined(__has_feature)
#define __has_feature(feature) 0
#endif

// The sanitizers put functions of their own before those of every library, and refuse to open one that has none of it.
constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
constexpr int ownFirst = isSanitized ? 0 : RTLD_DEEPBIND;

}  // namespace

void* openSystemLibrary(const char* name) { return ::dlopen(name, RTLD_NOW | RTLD_LOCAL | ownFirst); }

}  // namespace tavrin
