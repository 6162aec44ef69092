// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace tavrin {

/// What a host implements to hear from the library. Calls come from the thread that renders or evaluates a view.
class Logger {
public:
    Logger() = default;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;
    virtual ~Logger() = default;

    virtual void info(std::string_view message) = 0;
    /// A failure that did not end the render: a machine-readable code and a message.
    virtual void error(std::string_view code, std::string_view message) = 0;
    virtual void debug(std::string_view message) = 0;
    virtual void metric(std::string_view message) = 0;
    virtual void usertrack(std::string_view arg1, std::string_view arg2, std::string_view message) = 0;
};

}  // namespace tavrin
