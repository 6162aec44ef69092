// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "tavrin/platform/foundation/logger.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

/// Makes notes of the errors that are logged. Views keep the logger that they were bound with, but what they tell it
/// while a thread lays one widget out is that widget's: see `Hearing`.
class NoteLogger final : public Logger {
public:
    explicit NoteLogger(NoteSink sink) : sink_(std::move(sink)) {}

    void error(std::string_view code, std::string_view message) override;
    void info(std::string_view) override {}
    void debug(std::string_view) override {}
    void metric(std::string_view) override {}
    void usertrack(std::string_view, std::string_view, std::string_view) override {}

    /// While one lives, what is logged on its thread goes to another sink.
    class Hearing {
    public:
        explicit Hearing(const NoteSink& sink);
        Hearing(const Hearing&) = delete;
        Hearing& operator=(const Hearing&) = delete;
        ~Hearing();

    private:
        const NoteSink* before_;
    };

private:
    NoteSink sink_;
};

}  // namespace tavrin
