// SPDX-License-Identifier: MIT
#pragma once

#include <nanobind/nanobind.h>

namespace tavrin::python {

/// A call into the library that is under way. Throws `CallError` in a process that was forked while another thread was
/// in one: what that thread held there nobody gives back.
class Call {
public:
    Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call();
};

/// Has forks noticed.
void watchForks();

/// Does some work while the interpreter is free for other threads.
template <class Work>
auto unlocked(const Work& work) {
    const Call call;
    const nanobind::gil_scoped_release release;
    return work();
}

}  // namespace tavrin::python
