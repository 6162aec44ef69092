// SPDX-License-Identifier: MIT
#include "bindings/c/handles.h"

#ifndef NDEBUG

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <unordered_set>

namespace tavrin::c::live {
namespace {

struct Handles {
    std::mutex mutex;
    std::unordered_set<const void*> all;
};

Handles& handles() {
    static Handles live;
    return live;
}

}  // namespace

void add(const void* handle) {
    const std::lock_guard lock(handles().mutex);
    handles().all.insert(handle);
}

void remove(const void* handle) {
    const std::lock_guard lock(handles().mutex);
    if (handles().all.erase(handle) == 1) return;
    std::fputs("tavrin: a handle is freed that was freed before, or never was one\n", stderr);
    std::abort();
}

bool has(const void* handle) {
    const std::lock_guard lock(handles().mutex);
    return handles().all.contains(handle);
}

}  // namespace tavrin::c::live

#endif
