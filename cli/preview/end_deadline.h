// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace tavrin::cli {

/// Ends the process, with status 0, when it has not come to its end a while after `start`: work that cannot be
/// cancelled in time does not keep it. A SIGINT or SIGTERM in that while ends it sooner, as that signal does. Whoever
/// destroys this in time has come to the end. There is one in a process.
class EndDeadline {
public:
    /// `finish` does what must be done even then.
    EndDeadline(std::chrono::milliseconds patience, std::function<void()> finish);
    EndDeadline(const EndDeadline&) = delete;
    EndDeadline& operator=(const EndDeadline&) = delete;
    ~EndDeadline();

    void start();

private:
    std::chrono::milliseconds patience_;
    std::function<void()> finish_;
    std::thread thread_;
};

}  // namespace tavrin::cli
