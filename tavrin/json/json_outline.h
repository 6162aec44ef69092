// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/coding_path.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"

namespace tavrin {

/// The values of a JSON text with their places, in pre-order: for those who look at a text as it is written. Linear in
/// the text; immutable. Refers to the text, which must live as long.
class JSONOutline {
public:
    using Index = std::uint32_t;

    /// The longest text that an outline is made of, in bytes.
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    struct Value {
        std::uint32_t begin = 0;     ///< where it is written, in bytes
        std::uint32_t end = 0;       ///< behind its last byte
        std::uint32_t keyBegin = 0;  ///< of an object's member: where its key is written, quotes included
        std::uint32_t keyEnd = 0;    ///< equal to `keyBegin` for what has no key
        Index parent = 0;            ///< the array or object around it; its own index for the root
        Index last = 0;              ///< the index behind its last descendant
        std::uint32_t position = 0;  ///< among its parent's children, from 0

        [[nodiscard]] bool hasKey() const { return keyEnd > keyBegin; }
    };

    /// `text` must be valid JSON of at most `maximumBytes`; anything else yields some outline, and no crash.
    explicit JSONOutline(std::string_view text);

    [[nodiscard]] std::string_view text() const { return text_; }
    /// All values, the root first. Empty for a text without one.
    [[nodiscard]] std::span<const Value> values() const { return values_; }
    [[nodiscard]] const Value& operator[](Index index) const { return values_[index]; }

    /// The bytes of a value as they are written.
    [[nodiscard]] std::string_view raw(Index index) const;
    /// The first byte of a value, which tells its kind: one of `{["tfn-` and the digits.
    [[nodiscard]] char kind(Index index) const { return text_[values_[index].begin]; }
    [[nodiscard]] bool isString(Index index) const { return kind(index) == '"'; }
    [[nodiscard]] bool isObject(Index index) const { return kind(index) == '{'; }
    [[nodiscard]] bool isArray(Index index) const { return kind(index) == '['; }
    /// A string without its quotes and escapes.
    [[nodiscard]] std::string string(Index index) const;
    /// A member's key; empty for what has none.
    [[nodiscard]] std::string key(Index index) const;

    /// The way from the root to a value.
    [[nodiscard]] CodingPath path(Index index) const;
    /// Calls `visit(child)` for each element of an array or member of an object.
    template <class Visit>
    void forEachChild(Index parent, const Visit& visit) const {
        for (Index child = parent + 1; child < values_[parent].last; child = values_[child].last) visit(child);
    }

private:
    std::string_view text_;
    pool::Vector<Value> values_;
};

/// Follows many paths through one outline: an array or object with many children is walked once, not for each path.
/// Refers to the outline, which must live as long.
class OutlinePaths {
public:
    using Index = JSONOutline::Index;

    explicit OutlinePaths(const JSONOutline& outline) : outline_(outline) {}

    /// The value that a path leads to, or behind which it leads nowhere: the last one on the way that exists. The first
    /// of duplicate keys wins.
    [[nodiscard]] Index nearest(const CodingPath& path) { return follow(path).first; }
    /// The value that a path leads to; none where it leads nowhere.
    [[nodiscard]] std::optional<Index> find(const CodingPath& path);
    /// How many children have been looked at so far: what all these paths have cost.
    [[nodiscard]] std::size_t visited() const { return visited_; }

private:
    /// The children of one array or object.
    struct Children {
        std::vector<Index> elements;
        std::unordered_map<std::string, Index> members;  // the first of each key
    };

    /// How far a path leads: to which value, by how many of its steps.
    [[nodiscard]] std::pair<Index, std::size_t> follow(const CodingPath& path);
    [[nodiscard]] Index child(Index parent, const CodingKey& step);
    [[nodiscard]] const Children& childrenOf(Index parent);

    const JSONOutline& outline_;
    std::unordered_map<Index, Children> children_;  // of those that have many
    std::size_t visited_ = 0;
};

}  // namespace tavrin
