// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

namespace tavrin {

/// What is called when a precondition is violated: something a caller must never do, and no error can report.
/// It may throw; if it returns, the process ends.
using PreconditionHandler = std::function<void(std::string_view message)>;

/// Replaces the process-wide handler and returns the one before. An empty handler restores the default, which writes
/// one line on stderr and ends the process. Not to be called while another thread renders.
PreconditionHandler setPreconditionHandler(PreconditionHandler handler);

/// While one lives, a precondition violated on its thread throws a `TavrinError` of kind "Precondition", whatever the
/// handler is.
class ThrowingPreconditions {
public:
    ThrowingPreconditions();
    ThrowingPreconditions(const ThrowingPreconditions&) = delete;
    ThrowingPreconditions& operator=(const ThrowingPreconditions&) = delete;
    ~ThrowingPreconditions();

private:
    bool outer_;
};

/// Reports a violated precondition; never returns.
[[noreturn]] void preconditionFailure(std::string_view message);

}  // namespace tavrin
