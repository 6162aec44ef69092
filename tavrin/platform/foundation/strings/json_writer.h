// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tavrin {

/// Takes a long text piece by piece.
using TextSink = std::function<void(std::string_view piece)>;

/// Writes JSON text, value by value. Calls must follow JSON's grammar (a key before each value of an object, one value
/// at the root); anything else is a precondition violation.
///
/// Doubles (floats are widened) are written with the fewest digits that read back the same, whole numbers without ".0";
/// ones that are not finite become the strings "infinity", "-infinity" and "nan". In strings, what is not UTF-8 becomes
/// U+FFFD.
///
///     JSONWriter writer(JSONWriter::Style::compact);
///     writer.beginObject().key("frame").beginArray().value(0).value(12.5).endArray().endObject();
///     std::string text = std::move(writer).text();  // {"frame":[0,12.5]}
class JSONWriter {
public:
    enum class Style {
        compact,  ///< one line without blanks
        pretty    ///< indented by two spaces; short arrays of scalars stay on one line
    };

    /// With a sink the text goes there as it is written, and what comes last when it is whole.
    explicit JSONWriter(Style style, TextSink sink = {}) : style_(style), sink_(std::move(sink)) {}

    JSONWriter& beginObject() { return begin('{', false); }
    JSONWriter& endObject() { return end('}', false); }
    JSONWriter& beginArray() { return begin('[', true); }
    JSONWriter& endArray() { return end(']', true); }
    JSONWriter& key(std::string_view key);

    JSONWriter& value(std::string_view text);
    JSONWriter& value(const char* text) { return value(std::string_view(text)); }
    JSONWriter& value(double number);
    JSONWriter& value(std::int64_t number);
    JSONWriter& value(std::uint64_t number);
    JSONWriter& value(int number) { return value(std::int64_t{number}); }
    JSONWriter& value(bool truth);
    JSONWriter& value(std::nullptr_t);
    /// What may be absent; null where it is.
    template <class Value>
    JSONWriter& value(const std::optional<Value>& optional) {
        return optional ? value(*optional) : value(nullptr);
    }

    /// How many bytes have been written.
    [[nodiscard]] std::size_t size() const { return gone_ + text_.size(); }
    /// What has been written and did not go to a sink; whole once every begin is ended.
    [[nodiscard]] const std::string& text() const& { return text_; }
    [[nodiscard]] std::string text() && { return std::move(text_); }

private:
    /// An object or array that is not ended yet.
    struct Container {
        bool isArray;
        bool isEmpty = true;
        bool onlyScalars = true;
        std::size_t start = 0;  ///< where its bracket stands among all that is written
    };

    void beginValue(bool isScalar);
    void beginElement(bool isScalar);
    JSONWriter& begin(char bracket, bool isArray);
    JSONWriter& end(char bracket, bool isArray);
    JSONWriter& literal(std::string_view text);
    void newLine();
    void string(std::string_view text);
    void joinLines(std::size_t start);
    void sendOn();

    Style style_;
    TextSink sink_;
    std::size_t gone_ = 0;  // to the sink
    bool afterKey_ = false;
    std::vector<Container> open_;
    std::string text_;
};

}  // namespace tavrin
