// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// The C data interface of Apache Arrow: what columns are handed over as between libraries of one process. An ABI that
// stays as it is; its names are those that every library gives them.

#ifndef ARROW_C_DATA_INTERFACE
#define ARROW_C_DATA_INTERFACE

#define ARROW_FLAG_DICTIONARY_ORDERED 1
#define ARROW_FLAG_NULLABLE 2
#define ARROW_FLAG_MAP_KEYS_SORTED 4

// NOLINTBEGIN(readability-identifier-naming)
extern "C" {

/// A type.
struct ArrowSchema {
    const char* format;
    const char* name;
    const char* metadata;
    std::int64_t flags;
    std::int64_t n_children;
    ArrowSchema** children;
    ArrowSchema* dictionary;
    /// Gives back what it holds; null once that is done.
    void (*release)(ArrowSchema*);
    void* private_data;
};

/// The values of a column.
struct ArrowArray {
    std::int64_t length;
    std::int64_t null_count;
    std::int64_t offset;
    std::int64_t n_buffers;
    std::int64_t n_children;
    const void** buffers;
    ArrowArray** children;
    ArrowArray* dictionary;
    /// Gives back what it holds; null once that is done.
    void (*release)(ArrowArray*);
    void* private_data;
};
}
// NOLINTEND(readability-identifier-naming)

#endif
