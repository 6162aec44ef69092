// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/values/model_context.h"

namespace tavrin {

/// Goes through the path of an expression, step by step, within its text, which is given without its braces. A
/// component with "]" before "[" is a violated precondition.
class ExpressionWalk {
    static constexpr std::size_t none = std::string_view::npos;

public:
    explicit ExpressionWalk(std::string_view inner) : rest_(inner), hasIndices_(inner.find('[') != none) {}

    /// Goes to the next step; false after the last.
    bool next() {
        isIndex_ = std::exchange(indexIsNext_, false);
        if (isIndex_) return true;
        while (!rest_.empty()) {
            key_ = rest_.substr(0, rest_.find('.'));
            rest_.remove_prefix(std::min(key_.size() + 1, rest_.size()));
            if (key_.empty()) continue;
            if (hasIndices_) splitIndex();
            return true;
        }
        return false;
    }

    /// Whether the step is an index of an array, or else a key.
    [[nodiscard]] bool isIndex() const { return isIndex_; }
    [[nodiscard]] std::int64_t index() const { return index_; }
    [[nodiscard]] std::string_view key() const { return key_; }

private:
    /// Leaves the key of a component with brackets; an index between them is the next step.
    void splitIndex();

    std::string_view rest_;
    bool hasIndices_;  // whether any component may have one
    std::string_view key_;
    std::int64_t index_ = 0;
    bool isIndex_ = false;
    bool indexIsNext_ = false;
};

/// The whole path of an expression, given without its braces: the store and then the steps into it.
[[nodiscard]] std::vector<JSONKey> expressionPath(std::string_view inner);

/// Whether "]" stands before "[" in a component of a path, which no one may ask to resolve.
[[nodiscard]] bool hasReversedBrackets(std::string_view inner);

}  // namespace tavrin
