// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace tavrin {

/// Gives a C library's object back with `destroy` when it is no longer needed.
template <auto destroy>
struct Destroy {
    template <class T>
    void operator()(T* object) const {
        destroy(object);
    }
};

template <class T, auto destroy>
using Handle = std::unique_ptr<T, Destroy<destroy>>;

}  // namespace tavrin
