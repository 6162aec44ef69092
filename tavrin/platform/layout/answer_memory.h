// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/layout/proposal.h"

namespace tavrin::layout {

/// The answers to the last few different proposals. The first is kept in place, room for more is made when needed; past
/// `capacity` the oldest is forgotten.
template <class Answer>
class AnswerMemory {
public:
    /// A node in nested stacks is proposed {0, a share, infinity} in each dimension; where ratios multiply the shares,
    /// their number grows with the nesting.
    static constexpr std::size_t capacity = 64;

    /// The answer to `proposal`, null when it is not remembered.
    [[nodiscard]] const Answer* find(const Proposal& proposal) const {
        if (!used_) return nullptr;
        if (first_.proposal == proposal) return &first_.answer;
        for (auto entry = more_.rbegin(); entry != more_.rend(); ++entry)
            if (entry->proposal == proposal) return &entry->answer;
        return nullptr;
    }

    void keep(const Proposal& proposal, const Answer& answer) {
        if (!used_) {
            first_ = {proposal, answer};
            used_ = true;
        } else if (more_.size() < capacity - 1) {
            more_.push_back({proposal, answer});
        } else {
            more_[oldest_] = {proposal, answer};
            oldest_ = (oldest_ + 1) % more_.size();
        }
    }

    /// The memory it takes beside itself.
    [[nodiscard]] std::size_t byteCount() const { return more_.capacity() * sizeof(Entry); }

private:
    struct Entry {
        Proposal proposal;
        Answer answer;
    };

    Entry first_ = {};
    pool::Vector<Entry> more_;
    std::size_t oldest_ = 0;
    bool used_ = false;
};

}  // namespace tavrin::layout
