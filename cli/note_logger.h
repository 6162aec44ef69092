// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tavrin/platform/foundation/logger.h"

namespace tavrin::cli {

/// Keeps the errors that a render hears of, "error CODE: message" each.
class NoteLogger : public Logger {
public:
    explicit NoteLogger(std::vector<std::string>& notes) : notes_(notes) {}

    void error(std::string_view code, std::string_view message) override {
        notes_.push_back("error " + std::string(code) + ": " + std::string(message));
    }
    void info(std::string_view) override {}
    void debug(std::string_view) override {}
    void metric(std::string_view) override {}
    void usertrack(std::string_view, std::string_view, std::string_view) override {}

private:
    std::vector<std::string>& notes_;
};

}  // namespace tavrin::cli
