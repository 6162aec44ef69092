// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tavrin/platform/foundation/logger.h"

namespace tavrin {

/// A logger that keeps the errors it hears of, "CODE: message" each.
class Listener : public Logger {
public:
    void error(std::string_view code, std::string_view message) override {
        isElsewhere_ = isElsewhere_ || std::this_thread::get_id() != home_;
        errors_.push_back(std::string(code) + ": " + std::string(message));
    }
    void info(std::string_view) override {}
    void debug(std::string_view) override {}
    void metric(std::string_view) override {}
    void usertrack(std::string_view, std::string_view, std::string_view) override {}

    [[nodiscard]] const std::vector<std::string>& errors() const { return errors_; }
    /// Whether another thread called than the one that made it.
    [[nodiscard]] bool wasCalledElsewhere() const { return isElsewhere_; }

private:
    std::thread::id home_ = std::this_thread::get_id();
    bool isElsewhere_ = false;
    std::vector<std::string> errors_;
};

}  // namespace tavrin
