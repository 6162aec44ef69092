// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "cli/checked_document.h"

namespace tavrin::cli {

/// Writes what was found in documents for programs, one after the other. May throw `IOError` and `ClosedOutput`.
class CheckWriter {
public:
    virtual ~CheckWriter() = default;

    virtual void write(const CheckedDocument& checked) = 0;
    /// What kept all documents from being checked.
    virtual void fail(const Failure& failure) = 0;
    /// After the last document.
    virtual void finish() {}
};

// The writers of the formats for programs.
[[nodiscard]] std::unique_ptr<CheckWriter> jsonCheckWriter();
[[nodiscard]] std::unique_ptr<CheckWriter> sarifCheckWriter();
[[nodiscard]] std::unique_ptr<CheckWriter> githubCheckWriter();

}  // namespace tavrin::cli
