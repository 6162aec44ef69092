// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "tavrin/platform/foundation/memory/short_text.h"

namespace tavrin {

/// What a JSON value is. Numbers whose value is a whole one are integers however they are written (3.0, 1e2).
enum class JSONKind : unsigned char {
    null,
    boolean,
    integer,    ///< fits a signed 64-bit integer
    unsigned_,  ///< fits an unsigned 64-bit integer only
    floating,
    string,
    array,
    object,
};

/// Words for messages: "a string", "an object" …
std::string_view describe(JSONKind kind);

/// A parsed text as the parser leaves it: one 64-bit cell for each value, its type in the high byte and a payload
/// below, and a second cell for a number. A container's payload holds the index of the cell behind it and, from bit 32,
/// how many values it has; a string's is where it stands among the unescaped strings, its length first.
struct JSONTape {
    const std::uint64_t* cells = nullptr;
    const char* strings = nullptr;
};

/// One value of a parsed text. Cheap to copy; valid while its `JSONText` lives.
class JSONElement {
public:
    JSONElement() = default;
    JSONElement(const JSONTape* tape, std::size_t index) : JSONElement(tape, tape->cells + index) {}

    /// False for an element that was looked for and not found.
    [[nodiscard]] bool exists() const { return cell_ != nullptr; }
    [[nodiscard]] JSONKind kind() const;
    [[nodiscard]] bool isNull() const { return type() == 'n'; }
    [[nodiscard]] bool isString() const { return type() == '"'; }

    // Each of these may only be called on an element of that kind.
    [[nodiscard]] bool boolean() const { return type() == 't'; }
    [[nodiscard]] std::int64_t integer() const;
    [[nodiscard]] std::uint64_t unsignedInteger() const;
    [[nodiscard]] double floating() const { return number<double>(); }
    [[nodiscard]] std::string_view string() const;
    /// How many elements or members there are.
    [[nodiscard]] std::size_t size() const;

    /// Looks up several keys of an object in one pass: the first member called `keys[i]` stands at `i`, or an element
    /// that does not exist. The keys, a constant array, are compiled into the comparisons.
    template <const auto& keys>
    [[nodiscard]] std::array<JSONElement, keys.size()> findMembers() const;

    /// The first member that has one of several keys, or an element that does not exist.
    template <const auto& keys>
    [[nodiscard]] JSONElement findMember() const;

    /// Walks an array or an object: `while (walk.next()) use(walk.key(), walk.value())`.
    class Walk;

private:
    JSONElement(const JSONTape* tape, const std::uint64_t* cell) : tape_(tape), cell_(cell) {}

    [[nodiscard]] char type() const { return static_cast<char>(*cell_ >> 56); }
    [[nodiscard]] std::uint64_t payload() const { return *cell_ & 0x00FF'FFFF'FFFF'FFFF; }
    template <class Number>
    [[nodiscard]] Number number() const {
        return std::bit_cast<Number>(cell_[1]);
    }
    /// The cell behind this value, a container.
    [[nodiscard]] const std::uint64_t* behindContainer() const {
        return tape_->cells + static_cast<std::uint32_t>(*cell_);
    }
    /// The cell behind this value.
    [[nodiscard, gnu::always_inline]] const std::uint64_t* next() const;
    [[nodiscard]] JSONKind kindOfFloating() const;
    [[nodiscard]] std::size_t countedSize() const;

    const JSONTape* tape_ = nullptr;
    const std::uint64_t* cell_ = nullptr;
};

class JSONElement::Walk {
public:
    explicit Walk(const JSONElement& container)
        : tape_(container.tape_),
          next_(container.cell_ + 1),
          end_(container.behindContainer() - 1),
          isObject_(container.type() == '{') {}

    /// Steps to the next element; false after the last.
    [[gnu::always_inline]] bool next() {
        if (next_ == end_) return false;
        if (isObject_) key_ = next_++;
        value_ = next_;
        next_ = value().next();
        return true;
    }
    /// The member's key; for objects only.
    [[nodiscard]] std::string_view key() const { return JSONElement(tape_, key_).string(); }
    [[nodiscard]] JSONElement value() const { return {tape_, value_}; }

private:
    const JSONTape* tape_;
    const std::uint64_t* next_;
    const std::uint64_t* end_;
    const std::uint64_t* key_ = nullptr;
    const std::uint64_t* value_ = nullptr;
    bool isObject_;
};

inline JSONKind JSONElement::kind() const {
    static constexpr auto kinds = [] {
        std::array<JSONKind, 128> table{};  // what is not listed is null
        table['t'] = table['f'] = JSONKind::boolean;
        table['l'] = JSONKind::integer;
        table['u'] = JSONKind::unsigned_;
        table['d'] = JSONKind::floating;
        table['"'] = JSONKind::string;
        table['['] = JSONKind::array;
        table['{'] = JSONKind::object;
        return table;
    }();
    const JSONKind kind = kinds[static_cast<std::size_t>(type())];
    return kind == JSONKind::floating ? kindOfFloating() : kind;
}

inline std::string_view JSONElement::string() const {
    const char* stored = tape_->strings + payload();
    std::uint32_t length = 0;
    std::memcpy(&length, stored, sizeof length);
    return {stored + sizeof length, length};
}

inline const std::uint64_t* JSONElement::next() const {
    const char is = type();
    if (is == '{' || is == '[') return behindContainer();
    // Without a branch: texts and numbers take turns too often to be foreseen.
    return cell_ + 1 + static_cast<int>((is == 'l') | (is == 'u') | (is == 'd'));
}

inline std::int64_t JSONElement::integer() const {
    return type() == 'd' ? static_cast<std::int64_t>(number<double>()) : number<std::int64_t>();
}

inline std::uint64_t JSONElement::unsignedInteger() const {
    return type() == 'd' ? static_cast<std::uint64_t>(number<double>()) : number<std::uint64_t>();
}

inline std::size_t JSONElement::size() const {
    constexpr std::size_t uncounted = 0xFF'FFFF;  // where the tape's counter ends
    const std::size_t counted = payload() >> 32;
    return counted < uncounted ? counted : countedSize();
}

template <const auto& keys>
std::array<JSONElement, keys.size()> JSONElement::findMembers() const {
    std::array<JSONElement, keys.size()> found;
    for (Walk walk(*this); walk.next();) {
        const std::size_t index = indexOfText<keys>(walk.key());
        if (index < keys.size() && !found[index].exists()) found[index] = walk.value();
    }
    return found;
}

template <const auto& keys>
JSONElement JSONElement::findMember() const {
    for (Walk walk(*this); walk.next();)
        if (indexOfText<keys>(walk.key()) < keys.size()) return walk.value();
    return {};
}

/// A parsed JSON text: UTF-8, strictly JSON grammar, nested no deeper than is asked for, empty arrays and objects not
/// counted.
class JSONText {
public:
    /// How deep a text may be nested for those who follow it all the way down.
    static constexpr std::size_t maximumDepth = 2048;
    /// How deep it may be for those who see by themselves where they stop.
    static constexpr std::size_t greatestDepth = 1'000'000;

    /// Throws `DecodingError` (dataCorrupted) that says where and why a text is not JSON.
    explicit JSONText(std::string_view text, std::size_t depth = maximumDepth);
    JSONText(const JSONText&) = delete;
    JSONText& operator=(const JSONText&) = delete;
    ~JSONText();

    [[nodiscard]] JSONElement root() const;
    /// How deep the text is nested at most: `maximumDepth`, or what was asked for where that was not enough.
    [[nodiscard]] std::size_t depth() const { return depth_; }

private:
    struct Parser;
    static std::unique_ptr<Parser>& spareParser();

    std::unique_ptr<Parser> parser_;
    std::size_t depth_;
};

}  // namespace tavrin
