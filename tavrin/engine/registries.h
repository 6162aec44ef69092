// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/dsl/registry.h"

namespace tavrin {

/// The registries of all records, built once.
[[nodiscard]] const RecordRegistries& recordRegistries();
[[nodiscard]] const NodeRegistry& registerNodeType();
[[nodiscard]] const ModifierRegistry& registerMonifierType();

}  // namespace tavrin
