#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>

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

/// A parsed text as the parser leaves it: one 64-bit cell for each value, its type in the high byte and a payload below,
/// and a second cell for a number. A container's payload holds the index of the cell behind it and, from bit 32, how
/// many values it has; a string's is where it stands among the unescaped strings, its length first.
struct JSONTape {
    const std::uint64_t* cells = nullptr;
    const char* strings = nullptr;
};

/// One value of a parsed text. Cheap to copy; valid while its `JSONText` lives.
class JSONElement {
public:
    JSONElement() = default;
    JSONElement(const JSONTape* tape, std::size_t index) : tape_(tape), index_(index) {}

    /// False for an element that was looked for and not found.
    [[nodiscard]] bool exists() const { return tape_ != nullptr; }
    [[nodiscard]] JSONKind kind() const;

    // Each of these may only be called on an element of that kind.
    [[nodiscard]] bool boolean() const { return type() == 't'; }
    [[nodiscard]] std::int64_t integer() const;
    [[nodiscard]] std::uint64_t unsignedInteger() const;
    [[nodiscard]] double floating() const { return number<double>(); }
    [[nodiscard]] std::string_view string() const;
    /// How many elements or members there are.
    [[nodiscard]] std::size_t size() const;

    /// Looks up several keys of an object in one pass: `found[i]` is the first member called `keys[i]`, or an element
    /// that does not exist.
    void findMembers(std::span<const std::string_view> keys, JSONElement* found) const;

    /// Walks an array or an object: `while (walk.next()) use(walk.key(), walk.value())`.
    class Walk;

private:
    [[nodiscard]] std::uint64_t cell() const { return tape_->cells[index_]; }
    [[nodiscard]] char type() const { return static_cast<char>(cell() >> 56); }
    [[nodiscard]] std::uint64_t payload() const { return cell() & 0x00FF'FFFF'FFFF'FFFF; }
    template <class Number>
    [[nodiscard]] Number number() const {
        return std::bit_cast<Number>(tape_->cells[index_ + 1]);
    }
    /// The index behind this value.
    [[nodiscard]] std::size_t next() const;
    [[nodiscard]] JSONKind kindOfFloating() const;

    const JSONTape* tape_ = nullptr;
    std::size_t index_ = 0;
};

class JSONElement::Walk {
public:
    explicit Walk(const JSONElement& container)
        : tape_(container.tape_),
          next_(container.index_ + 1),
          end_(container.next() - 1),
          isObject_(container.type() == '{') {}

    /// Steps to the next element; false after the last.
    bool next() {
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
    std::size_t next_;
    std::size_t end_;
    std::size_t key_ = 0;
    std::size_t value_ = 0;
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

inline std::size_t JSONElement::next() const {
    switch (type()) {
        case '[':
        case '{': return static_cast<std::uint32_t>(cell());
        case 'l':
        case 'u':
        case 'd': return index_ + 2;
        default: return index_ + 1;
    }
}

/// A parsed JSON text: UTF-8, strictly JSON grammar, nested at most `maximumDepth` deep, empty arrays and objects not
/// counted.
class JSONText {
public:
    static constexpr std::size_t maximumDepth = 2048;

    /// Throws `DecodingError` (dataCorrupted) that says where and why a text is not JSON.
    explicit JSONText(std::string_view text);
    JSONText(const JSONText&) = delete;
    JSONText& operator=(const JSONText&) = delete;
    ~JSONText();

    [[nodiscard]] JSONElement root() const;

private:
    struct Parser;
    static std::unique_ptr<Parser>& spareParser();

    std::unique_ptr<Parser> parser_;
};

}  // namespace tavrin
