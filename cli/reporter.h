// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "tavrin/diagnostics/diagnostic.h"

namespace tavrin::cli {

/// Writes what goes wrong on standard error.
class Reporter {
public:
    explicit Reporter(TextFormat format) : format_(format) {}

    /// Says in every failure and note which document it is about.
    void nameDocuments() { namesDocuments_ = true; }

    void report(const Failure& failure) const;
    /// Writes a diagnostic for which a run fails.
    void report(const Diagnostic& diagnostic, const Source& document, const Source* model) const;
    /// Writes lines about a document that are no failure; in text form only. They name it where there are several.
    void note(const std::string& document, const std::vector<std::string>& lines) const;
    /// Writes a diagnostic; in text form only. `word` stands for its severity where it is given.
    void note(const Diagnostic& diagnostic, const Source& source, std::string_view word = {}) const;
    /// Writes a line that helps people with a wrong command line.
    void hint(std::string_view line) const;

private:
    void write(std::string_view text) const;

    TextFormat format_;
    bool namesDocuments_ = false;
};

}  // namespace tavrin::cli
