// SPDX-License-Identifier: MIT
#include "tavrin/dsl/modifier.h"

#include "tavrin/dsl/registry.h"

namespace tavrin {

Modifier Coding<Modifier>::decode(const Decoder& decoder) {
    return decodeTagged<Modifier, ModifierType>(decoder, RecordRegistries::of(decoder).modifiers);
}

void Coding<Modifier>::encode(const Modifier& modifier, JSONWriter& writer) { encodeTagged(*modifier.box_, writer); }

}  // namespace tavrin
