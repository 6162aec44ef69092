// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "bindings/c/tavrin/tavrin_c.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/platform/foundation/budget/render_budget.h"

struct tavrin_document {
    tavrin::OpenDocument value;
};
struct tavrin_widget {
    tavrin::OpenWidget value;
};
struct tavrin_bytes {
    std::string value;
};
struct tavrin_cancel_token {
    tavrin::CancelToken value;
};

namespace tavrin::c {

/// A call that no error of a document can explain.
struct Misuse : std::logic_error {
    using std::logic_error::logic_error;
};

/// In debug builds the handles that live are known, so that others are refused.
namespace live {
#ifdef NDEBUG
inline void add(const void*) {}
inline void remove(const void*) {}
inline bool has(const void* handle) { return handle != nullptr; }
#else
void add(const void* handle);
/// Ends the program where it is no handle that lives: nobody else would hear of it.
void remove(const void* handle);
bool has(const void* handle);
#endif
}  // namespace live

template <class Handle, class Value>
Handle* made(Value value) {
    auto* const handle = new Handle{std::move(value)};
    live::add(handle);
    return handle;
}

template <class Handle>
void unmake(Handle* handle) {
    if (handle == nullptr) return;
    live::remove(handle);
    delete handle;
}

/// What a handle holds. Throws `Misuse` for null, and for one that was freed where that is known.
template <class Handle>
const auto& valueOf(const Handle* handle) {
    if (!live::has(handle))
        throw Misuse(handle == nullptr ? "a handle is NULL" : "a handle was freed, or never was one");
    return handle->value;
}

}  // namespace tavrin::c
