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

/// The handler that makes an error of it: throws a `TavrinError` of kind "Precondition".
[[noreturn]] void throwPreconditionError(std::string_view message);

/// While one lives, `throwPreconditionError` is the handler of its thread, whatever that of the process is.
class ThrowingPreconditions {
public:
    ThrowingPreconditions();
    ThrowingPreconditions(const ThrowingPreconditions&) = delete;
    ThrowingPreconditions& operator=(const ThrowingPreconditions&) = delete;
    ~ThrowingPreconditions();

private:
    const PreconditionHandler* outer_;
};

/// Reports a violated precondition; never returns.
[[noreturn]] void preconditionFailure(std::string_view message);

}  // namespace tavrin
