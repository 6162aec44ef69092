// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nanobind/nanobind.h>

#include "bindings/python/src/arrow_column.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/doors/option.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::python {

/// What the rows of a batch are drawn of, and how. Made and destroyed with the interpreter held, read without it.
class Batch {
public:
    /// So many rows. A document is a str or bytes, for all rows, or a column; a model is a column or None; `columns`
    /// are those of options by the options' names. A column comes as a pair: an object with `__arrow_c_array__`, and
    /// what messages call its type. All must live as long as this. Throws Python's errors and `OptionError`.
    Batch(std::size_t count, nanobind::handle document, nanobind::handle model, const nanobind::dict& options,
          const nanobind::dict& columns);

    // Each of these throws `OptionError` for a row that asks for what cannot be done.

    [[nodiscard]] DrawingOptions options(std::size_t row) const;
    /// Also throws as `OpenDocument` does.
    [[nodiscard]] OpenDocument document(std::size_t row, const RenderBudget& budget) const;
    /// None where rows have no models.
    [[nodiscard]] std::optional<std::string_view> model(std::size_t row) const;

private:
    struct OptionColumn {
        OptionName option;
        ArrowColumn values;

        /// Reads what a row has for the option, if it has anything.
        void read(std::size_t row, OptionReader& reader) const;
    };

    OptionReader usual_;
    std::optional<DrawingOptions> options_;  ///< of all rows, where no column has any
    std::vector<OptionColumn> columns_;
    std::string_view document_;
    std::optional<ArrowColumn> documents_;
    std::optional<ArrowColumn> models_;
};

}  // namespace tavrin::python
