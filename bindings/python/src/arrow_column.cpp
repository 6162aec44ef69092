// SPDX-License-Identifier: MIT
#include "bindings/python/src/arrow_column.h"

#include <charconv>
#include <cstring>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/time/date.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

/// A buffer need not lie where its numbers might.
template <class Value>
Value loaded(const void* buffer, std::int64_t index) {
    Value value;
    std::memcpy(&value, static_cast<const char*>(buffer) + index * std::int64_t{sizeof(Value)}, sizeof value);
    return value;
}

template <class Number>
Number stored(const ArrowArray& array, std::int64_t index) {
    return loaded<Number>(array.buffers[1], index);
}

template <class T>
const T* inside(nb::handle capsule, const char* name) {
    const auto* const pointer = static_cast<const T*>(PyCapsule_GetPointer(capsule.ptr(), name));
    if (pointer == nullptr) throw nb::python_error();
    if (pointer->release == nullptr) throw nb::value_error("a column has been released already");
    return pointer;
}

/// Texts of up to twelve bytes stand in their view, longer ones in one of the buffers behind it.
std::string_view viewedText(const ArrowArray& array, std::int64_t index) {
    struct View {
        std::int32_t size;
        std::int32_t prefix;  // here a short text begins
        std::int32_t buffer;
        std::int32_t offset;
    };
    constexpr std::size_t most = sizeof(View) - sizeof(View::size);
    const View view = loaded<View>(array.buffers[1], index);
    const auto size = static_cast<std::size_t>(view.size);
    const auto* const views = static_cast<const char*>(array.buffers[1]);
    if (size <= most) return {views + index * std::int64_t{sizeof view} + sizeof view.size, size};
    return {static_cast<const char*>(array.buffers[2 + view.buffer]) + view.offset, size};
}

template <class Offset>
std::string_view offsetText(const ArrowArray& array, std::int64_t index) {
    const auto begin = static_cast<std::size_t>(stored<Offset>(array, index));
    const auto end = static_cast<std::size_t>(stored<Offset>(array, index + 1));
    if (begin == end) return {};  // then there may be no buffer
    return {static_cast<const char*>(array.buffers[2]) + begin, end - begin};
}

double unitOf(char letter) {
    switch (letter) {
        case 's': return 1;
        case 'm': return 1e3;
        case 'u': return 1e6;
        default: return 1e9;
    }
}

}  // namespace

ArrowColumn::ArrowColumn(nb::handle array) {
    const nb::object capsules = array.attr("__arrow_c_array__")();
    schemaCapsule_ = capsules[0];
    arrayCapsule_ = capsules[1];
    const auto* const schema = inside<ArrowSchema>(schemaCapsule_, "arrow_schema");
    array_ = inside<ArrowArray>(arrayCapsule_, "arrow_array");
    values_ = read(*schema, *array_);
    if (schema->dictionary != nullptr) {
        indices_ = values_;
        values_ = read(*schema->dictionary, *array_->dictionary);
        if (values_.kind == Kind::pair || schema->dictionary->dictionary != nullptr) values_.kind = Kind::other;
    } else if (values_.kind == Kind::pair) {
        sides_ = read(*schema->children[0], *array_->children[0]);
        if (sides_.kind != Kind::number || schema->children[0]->dictionary != nullptr) values_.kind = Kind::other;
    }
}

ArrowColumn::Values ArrowColumn::read(const ArrowSchema& schema, const ArrowArray& array) {
    const std::string_view format = schema.format;
    Values values{.array = &array};
    if (format == "n") {
        values.kind = Kind::null;
    } else if (format == "b") {
        values.kind = Kind::flag;
    } else if (format == "u" || format == "U" || format == "vu") {
        values.kind = Kind::text;
        values.width = format[0];
    } else if (format == "z" || format == "Z" || format == "vz") {
        values.kind = Kind::bytes;
        values.width = format == "z" ? 'u' : format == "Z" ? 'U' : 'v';
    } else if (format.size() == 1 && std::string_view("cCsSiIlLfg").find(format[0]) != std::string_view::npos) {
        values.kind = Kind::number;
        values.width = format[0];
    } else if (format.starts_with("ts") && format.size() > 4) {  // a zone stands behind the colon
        values.kind = Kind::moment;
        values.width = 'l';
        values.unit = unitOf(format[2]);
    } else if (format == "+l" || format == "+L") {
        values.kind = Kind::pair;
        values.width = format[1] == 'l' ? 'i' : 'l';
    } else if (format.starts_with("+w:")) {
        values.kind = Kind::pair;
        std::from_chars(format.data() + 3, format.data() + format.size(), values.listSize);
    }
    return values;
}

bool ArrowColumn::isValid(const ArrowArray& array, std::int64_t at) {
    if (array.n_buffers == 0) return false;  // of the type that has nothing but nulls
    const auto* const bits = static_cast<const std::uint8_t*>(array.buffers[0]);
    return bits == nullptr || (bits[at / 8] >> (at % 8) & 1) != 0;
}

std::int64_t ArrowColumn::wholeNumber(const Values& values, std::int64_t index) {
    const ArrowArray& array = *values.array;
    switch (values.width) {
        case 'c': return stored<std::int8_t>(array, index);
        case 'C': return stored<std::uint8_t>(array, index);
        case 's': return stored<std::int16_t>(array, index);
        case 'S': return stored<std::uint16_t>(array, index);
        case 'i': return stored<std::int32_t>(array, index);
        case 'I': return stored<std::uint32_t>(array, index);
        default: return stored<std::int64_t>(array, index);
    }
}

OptionValue ArrowColumn::number(const Values& values, std::int64_t index) {
    if (values.width == 'f') return static_cast<double>(stored<float>(*values.array, index));
    if (values.width == 'g') return stored<double>(*values.array, index);
    const std::int64_t whole = wholeNumber(values, index);
    if (whole >= 0 || values.width == 'L') return static_cast<std::uint64_t>(whole);
    return static_cast<double>(whole);
}

std::string_view ArrowColumn::textAt(const Values& values, std::int64_t index) {
    switch (values.width) {
        case 'u': return offsetText<std::int32_t>(*values.array, index);
        case 'U': return offsetText<std::int64_t>(*values.array, index);
        default: return viewedText(*values.array, index);
    }
}

std::optional<std::int64_t> ArrowColumn::place(std::size_t row) const {
    std::int64_t at = static_cast<std::int64_t>(row) + array_->offset;
    if (!isValid(*array_, at)) return std::nullopt;
    if (indices_.array == nullptr) return at;
    at = wholeNumber(indices_, at) + values_.array->offset;
    return isValid(*values_.array, at) ? std::optional(at) : std::nullopt;
}

std::optional<std::string_view> ArrowColumn::text(std::size_t row) const {
    const auto at = place(row);
    return at ? std::optional(textAt(values_, *at)) : std::nullopt;
}

std::optional<OptionValue> ArrowColumn::pair(std::int64_t index) const {
    std::int64_t begin = index * values_.listSize;
    std::int64_t end = begin + values_.listSize;
    if (values_.listSize < 0) {
        begin = wholeNumber(values_, index);
        end = wholeNumber(values_, index + 1);
    }
    if (end - begin != 2) return std::nullopt;
    begin += sides_.array->offset;
    if (!isValid(*sides_.array, begin) || !isValid(*sides_.array, begin + 1)) return std::nullopt;
    const auto side = [this](std::int64_t at) {
        const OptionValue value = number(sides_, at);
        const auto* const whole = std::get_if<std::uint64_t>(&value);
        return whole != nullptr ? static_cast<double>(*whole) : std::get<double>(value);
    };
    return Size{side(begin), side(begin + 1)};
}

std::optional<OptionValue> ArrowColumn::value(std::size_t row) const {
    const auto at = place(row);
    if (!at) return std::nullopt;
    switch (values_.kind) {
        case Kind::text: return std::string(textAt(values_, *at));
        case Kind::flag: {
            const auto* const bits = static_cast<const std::uint8_t*>(values_.array->buffers[1]);
            return (bits[*at / 8] >> (*at % 8) & 1) != 0;
        }
        case Kind::number: return number(values_, *at);
        case Kind::moment: return Date{static_cast<double>(wholeNumber(values_, *at)) / values_.unit};
        case Kind::pair: return pair(*at);
        default: return std::nullopt;
    }
}

}  // namespace tavrin::python
