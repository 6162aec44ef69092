// SPDX-License-Identifier: MIT
#include "tavrin/engine/registries.h"

#include "tavrin/engine/record_types.h"

namespace tavrin {
namespace {

template <class Registry, class Tagged, class... Records>
constexpr Registry registryOf(TypeList<Records...>) {
    Registry registry{};
    ((registry[indexOf(Records::type)] = Tagged::template decodeAs<Records>), ...);
    return registry;
}

}  // namespace

const RecordRegistries& recordRegistries() {
    static constexpr RecordRegistries registries{
        .nodes = registryOf<NodeRegistry, Node>(NodeRecords{}),
        .modifiers = registryOf<ModifierRegistry, Modifier>(ModifierRecords{})};
    return registries;
}

const NodeRegistry& registerNodeType() { return recordRegistries().nodes; }

const ModifierRegistry& registerMonifierType() { return recordRegistries().modifiers; }

}  // namespace tavrin
