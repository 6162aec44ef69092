// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nanobind/nanobind.h>

#include "bindings/python/src/arrow_c_data.h"

namespace tavrin::python {

/// Gives back a block of memory: large ones are mapped by themselves.
struct FreeBlock {
    std::size_t mapped = 0;
    void operator()(std::uint8_t* bytes) const;
};

/// Bytes that grow at their end, and in the end are a column's buffer as they are.
class ArrowBuffer {
public:
    void append(const void* bytes, std::size_t count);

    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] const void* data() const { return bytes_.get(); }

private:
    void grow(std::size_t capacity);

    std::unique_ptr<std::uint8_t, FreeBlock> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// A column that is written row by row and then handed over. Each call of a function `add…` adds a row.
class ArrowField {
public:
    /// Numbers that take so many bytes each.
    static ArrowField numbers(std::string name, std::string format, std::size_t width);
    static ArrowField texts(std::string name);
    static ArrowField binary(std::string name);
    template <class... Fields>
    static ArrowField records(std::string name, Fields... fields) {
        ArrowField record(std::move(name), "+s", Layout::records);
        (record.fields_.push_back(std::move(fields)), ...);
        return record;
    }
    static ArrowField lists(std::string name, ArrowField items);

    void addNull();
    /// A number of the column's width.
    template <class Number>
    void add(Number number) {
        values_.append(&number, sizeof number);
        addValid(true);
    }
    /// A text, where bytes that are no UTF-8 become U+FFFD.
    void addText(std::string_view text);
    void addBytes(std::string_view bytes);
    /// A list of the items that have been added to `field(0)` since the last one.
    void addList();
    /// A record of what has been added to each field.
    void addRecord() { addValid(true); }

    [[nodiscard]] ArrowField& field(std::size_t index) { return fields_[index]; }

    /// Hands the column over in two capsules, a type's and the values', as `__arrow_c_array__` does. Texts, lists and
    /// binaries that take 2 GiB and more become their large kinds.
    static nanobind::tuple capsules(ArrowField field);

private:
    enum class Layout : unsigned char { numbers, bytes, lists, records };
    struct ArrayOwner;
    struct SchemaOwner;

    ArrowField(std::string name, std::string format, Layout layout)
        : name_(std::move(name)), format_(std::move(format)), layout_(layout) {}

    void addValid(bool isValid);
    /// Ends the row where its bytes or items end now.
    void addEnd();
    /// The ends of rows as the format has them, which becomes the large one where it must.
    ArrowBuffer takeOffsets();
    static void moveTo(ArrowField field, ArrowSchema& schema, ArrowArray& array);

    std::string name_;
    std::string format_;
    Layout layout_;
    std::size_t width_ = 0;
    std::int64_t length_ = 0;
    std::int64_t nulls_ = 0;
    std::vector<std::uint8_t> valid_;  ///< a bit for each row
    std::vector<std::int64_t> ends_;
    ArrowBuffer values_;
    std::vector<ArrowField> fields_;
};

}  // namespace tavrin::python
