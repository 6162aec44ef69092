// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string>

#include "cli/serve/drawing_queue.h"
#include "cli/serve/metrics.h"
#include "cli/serve/served_request.h"
#include "tavrin/widget/document.h"

namespace tavrin::cli {

/// Documents that have been decoded, by the digest of their text, so that one that is drawn often is decoded once.
/// Those that were asked for longest ago go first. Thread-safe.
class DecodedDocuments {
public:
    static constexpr std::size_t maximumCount = 256;
    static constexpr std::size_t maximumBytes = std::size_t{32} << 20;  ///< of their texts

    /// Null where there is none of that digest.
    [[nodiscard]] std::shared_ptr<const Document> find(const std::string& digest);
    void keep(const std::string& digest, std::shared_ptr<const Document> document, std::size_t textBytes);

private:
    struct Kept {
        std::string digest;
        std::shared_ptr<const Document> document;
        std::size_t bytes = 0;
    };

    std::mutex mutex_;
    std::list<Kept> kept_;  // the latest first
};

/// Draws what is asked for within some limits. Throws nothing: what fails is in the outcome, as is told to who asked.
/// For want of a moment, it is the present one.
[[nodiscard]] WorkOutcome drawServed(const ServedRequest& request, DecodedDocuments& documents, Metrics& metrics,
                                     const DrawingQueue::Limits& limits);

/// The same for what is wrong or doubtful in a document: `{"diagnostics": […]}`.
[[nodiscard]] WorkOutcome checkServed(const ServedRequest& request, Metrics& metrics,
                                      const DrawingQueue::Limits& limits);

}  // namespace tavrin::cli
