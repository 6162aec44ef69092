// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>

#include "tavrin/dsl/node.h"

namespace tavrin {

/// How a tag's record is decoded; null for a tag without one.
template <class Tagged>
using DecodeRecord = Tagged (*)(const Decoder& decoder);

/// From each tag to its record type.
using NodeRegistry = std::array<DecodeRecord<Node>, Keywords<NodeType>::raw.size()>;
using ModifierRegistry = std::array<DecodeRecord<Modifier>, Keywords<ModifierType>::raw.size()>;

/// The registries, built once. They stand above all record types, in the folder that knows them all.
[[nodiscard]] const NodeRegistry& registerNodeType();
[[nodiscard]] const ModifierRegistry& registerMonifierType();

}  // namespace tavrin
