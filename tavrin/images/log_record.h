// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/logger.h"

namespace tavrin {

/// Keeps the errors it hears of for another logger, which may be asked for on one thread only.
class LogRecord final : public Logger {
public:
    void error(std::string_view code, std::string_view message) override { errors_.emplace_back(code, message); }
    // Loading a picture tells of nothing else.
    void info(std::string_view) override {}
    void debug(std::string_view) override {}
    void metric(std::string_view) override {}
    void usertrack(std::string_view, std::string_view, std::string_view) override {}

    /// Tells a logger, which may be null, all that was heard.
    void replay(Logger* logger) const {
        if (!logger) return;
        for (const auto& [code, message] : errors_) logger->error(code, message);
    }

private:
    std::vector<std::pair<std::string, std::string>> errors_;
};

}  // namespace tavrin
