// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "cli/input.h"
#include "cli/stream/kept_files.h"
#include "tavrin/widget/document.h"

namespace tavrin::cli {

/// A document's text, and what came of decoding it. Immutable.
class ReadDocument {
public:
    ReadDocument(Source source, const RenderBudget& budget);

    [[nodiscard]] const Source& source() const { return source_; }
    /// Throws what decoding it threw, each time.
    [[nodiscard]] const Document& decoded() const;

private:
    Source source_;
    std::optional<Document> document_;
    std::exception_ptr error_;
};

/// Documents by their files' names, each read and decoded once while its file stays as it is. Any number of threads may
/// ask.
class KeptDocuments {
public:
    static constexpr std::size_t maximumCount = 64;
    /// Of the documents' texts.
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    /// What reading and decoding a document may cost.
    explicit KeptDocuments(const RenderBudget& budget) : budget_(budget) {}

    /// Throws what `readInput` does.
    [[nodiscard]] std::shared_ptr<const ReadDocument> find(const std::string& path);

private:
    RenderBudget budget_;
    KeptFiles<ReadDocument> kept_{maximumBytes, maximumCount};
};

}  // namespace tavrin::cli
