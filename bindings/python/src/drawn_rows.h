// SPDX-License-Identifier: MIT
#pragma once

#include "bindings/python/src/arrow_field.h"
#include "tavrin/doors/error_description.h"
#include "tavrin/doors/open_document.h"

namespace tavrin::python {

/// The columns that drawing adds to a batch: `picture`, `width`, `height`, `valid_until` and `error`.
class DrawnRows {
public:
    DrawnRows();

    // Each adds a row.
    void add(const DrawnPicture& drawn);
    void add(const ErrorDescription& failure);

    /// All of them in a record.
    [[nodiscard]] ArrowField take() { return std::move(rows_); }

private:
    void addError(const ErrorDescription& failure);

    ArrowField& picture() { return rows_.field(0); }
    ArrowField& width() { return rows_.field(1); }
    ArrowField& height() { return rows_.field(2); }
    ArrowField& validUntil() { return rows_.field(3); }
    ArrowField& error() { return rows_.field(4); }

    ArrowField rows_;
};

}  // namespace tavrin::python
