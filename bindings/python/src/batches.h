// SPDX-License-Identifier: MIT
#pragma once

#include <nanobind/nanobind.h>

namespace tavrin::python {

/// Adds what works on batches of rows.
void addBatches(nanobind::module_& module);

}  // namespace tavrin::python
