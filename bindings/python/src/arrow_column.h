// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nanobind/nanobind.h>

#include "bindings/python/src/arrow_c_data.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::python {

/// A column of a batch, read where it lies: an object with `__arrow_c_array__`, which has been validated. Made and
/// destroyed with the interpreter held, read without it by any thread.
class ArrowColumn {
public:
    /// What its values are.
    enum class Kind : unsigned char {
        null,    ///< nothing; each is null
        text,    ///< UTF-8
        bytes,   ///< anything
        flag,    ///< true or false
        number,  ///< whole or not
        moment,  ///< with a time zone
        pair,    ///< lists of numbers
        other,   ///< what cannot be read here
    };

    explicit ArrowColumn(nanobind::handle array);

    [[nodiscard]] Kind kind() const { return values_.kind; }
    [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(array_->length); }

    /// The value of a row of a column of texts or bytes, valid as long as this; none where it is null.
    [[nodiscard]] std::optional<std::string_view> text(std::size_t row) const;
    /// The value of a row of a column of any kind but bytes and other, as options have it: none where it is null, or a
    /// list of two numbers neither of which is null.
    [[nodiscard]] std::optional<OptionValue> value(std::size_t row) const;
    [[nodiscard]] bool isNull(std::size_t row) const { return !place(row); }

private:
    /// An array with what its format says, read once.
    struct Values {
        const ArrowArray* array = nullptr;
        Kind kind = Kind::other;
        char width = 0;              ///< how numbers, lengths of texts or a dictionary's indices are stored
        double unit = 1;             ///< of moments: how many make a second
        std::int64_t listSize = -1;  ///< of lists that are all of one size
    };

    static Values read(const ArrowSchema& schema, const ArrowArray& array);
    static bool isValid(const ArrowArray& array, std::int64_t at);
    static std::int64_t wholeNumber(const Values& values, std::int64_t at);
    static OptionValue number(const Values& values, std::int64_t at);
    static std::string_view textAt(const Values& values, std::int64_t at);
    [[nodiscard]] std::optional<OptionValue> pair(std::int64_t at) const;
    /// Where in `values_` a row's value stands; none where it is null.
    [[nodiscard]] std::optional<std::int64_t> place(std::size_t row) const;

    // Which give back what they hold when they go.
    nanobind::object schemaCapsule_;
    nanobind::object arrayCapsule_;
    const ArrowArray* array_ = nullptr;
    Values indices_;  ///< into the values, of a column with a dictionary
    Values values_;
    Values sides_;  ///< of lists: what is in them
};

}  // namespace tavrin::python
