// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/values/model_context.h"

namespace tavrin {

/// What is wrong with the brackets of a component of a path.
struct ExpressionFault {
    enum class Kind : unsigned char {
        reversedBrackets,  ///< "]" stands before "[": the component is no step, and no one may ask to resolve it
        unmatchedBracket,  ///< there is only one of them: the component is a key
        noIndex,           ///< what stands between them is no whole number: the component is a key
        ignoredText,       ///< something follows the index
    };
    Kind kind;
    std::string_view component;
    std::string_view index = {};  ///< what stands between the brackets

    friend bool operator==(const ExpressionFault&, const ExpressionFault&) = default;
};

/// Goes through the path of an expression, step by step, within its text, which is given without its braces.
class ExpressionWalk {
    static constexpr std::size_t none = std::string_view::npos;

public:
    explicit ExpressionWalk(std::string_view inner)
        : rest_(inner), hasBrackets_(inner.find('[') != none || inner.find(']') != none) {}

    /// Goes to the next step; false after the last one and where brackets are reversed.
    bool next() {
        isIndex_ = std::exchange(indexIsNext_, false);
        if (isIndex_) return true;
        fault_.reset();
        while (!rest_.empty()) {
            key_ = rest_.substr(0, rest_.find('.'));
            rest_.remove_prefix(std::min(key_.size() + 1, rest_.size()));
            if (!key_.empty()) return !hasBrackets_ || splitIndex();
        }
        return false;
    }

    /// What is wrong with the component that the step stands in, or that is none.
    [[nodiscard]] const std::optional<ExpressionFault>& fault() const { return fault_; }

    /// Whether the step is an index of an array, or else a key.
    [[nodiscard]] bool isIndex() const { return isIndex_; }
    [[nodiscard]] std::int64_t index() const { return index_; }
    [[nodiscard]] std::string_view key() const { return key_; }

private:
    /// Leaves the key of a component with brackets; an index between them is the next step. False where they are
    /// reversed.
    bool splitIndex();

    std::string_view rest_;
    bool hasBrackets_;  // whether any component may have some
    std::string_view key_;
    std::int64_t index_ = 0;
    bool isIndex_ = false;
    bool indexIsNext_ = false;
    std::optional<ExpressionFault> fault_;
};

/// An expression's path, without its braces.
[[nodiscard]] constexpr std::string_view innerOf(std::string_view expression) {
    return expression.substr(2, expression.size() - 4);
}

/// The whole path of an expression, given without its braces: the store and then the steps into it, as far as there are
/// any.
[[nodiscard]] std::vector<JSONKey> expressionPath(std::string_view inner);

/// The first thing that is wrong with the brackets of a path.
[[nodiscard]] std::optional<ExpressionFault> findBracketFault(std::string_view inner);

}  // namespace tavrin
