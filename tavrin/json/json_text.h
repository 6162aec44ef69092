#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace simdjson::dom {
class document;
}

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

/// One value of a parsed text. Cheap to copy; valid while its `JSONText` lives.
class JSONElement {
public:
    JSONElement() = default;

    /// False for an element that was looked for and not found.
    [[nodiscard]] bool exists() const { return document_ != nullptr; }
    [[nodiscard]] JSONKind kind() const;

    // Each of these may only be called on an element of that kind.
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] std::int64_t integer() const;
    [[nodiscard]] std::uint64_t unsignedInteger() const;
    [[nodiscard]] double floating() const;
    [[nodiscard]] std::string_view string() const;
    /// How many elements or members there are.
    [[nodiscard]] std::size_t size() const;

    /// Looks up several keys of an object in one pass: `found[i]` is the first member called `keys[i]`, or an element
    /// that does not exist.
    void findMembers(std::span<const std::string_view> keys, JSONElement* found) const;

    /// Walks an array or an object: `while (walk.next()) use(walk.key(), walk.value())`.
    class Walk;

private:
    friend class JSONText;

    JSONElement(const simdjson::dom::document* document, std::size_t index) : document_(document), index_(index) {}

    const simdjson::dom::document* document_ = nullptr;
    std::size_t index_ = 0;  // where the value stands on the document's tape
};

class JSONElement::Walk {
public:
    explicit Walk(const JSONElement& container);
    /// Steps to the next element; false after the last.
    bool next();
    /// The member's key; for objects only.
    [[nodiscard]] std::string_view key() const;
    [[nodiscard]] JSONElement value() const { return value_; }

private:
    JSONElement value_;
    std::size_t next_;
    std::size_t end_;
    std::size_t key_ = 0;
    bool isObject_;
};

/// A parsed JSON text: UTF-8, strictly JSON grammar, nested at most `maximumDepth` deep.
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
