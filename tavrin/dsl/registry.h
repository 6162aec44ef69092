// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/dsl/node.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/platform/foundation/tavrin_error.h"

// From a "type" to the record that is decoded.

namespace tavrin {

/// How a tag's record is decoded; null for a tag without one.
template <class Tagged>
using DecodeRecord = Tagged (*)(const Decoder& decoder);

/// From each tag to its record type.
using NodeRegistry = std::array<DecodeRecord<Node>, enumeratorCount<NodeType>>;
using ModifierRegistry = std::array<DecodeRecord<Modifier>, enumeratorCount<ModifierType>>;

/// The registries that nodes and modifiers are decoded with. The records stand above this folder, so whoever begins to
/// decode hands them over: `DecodingOptions::registries`.
struct RecordRegistries {
    NodeRegistry nodes;
    ModifierRegistry modifiers;

    [[nodiscard]] static const RecordRegistries& of(const Decoder& decoder) {
        if (const RecordRegistries* registries = decoder.options().registries) return *registries;
        preconditionFailure("nodes and modifiers are decoded with registries");
    }
};

/// The tag that a value names; a message offers those that have a record, since a reserved one would be refused next.
template <class Tag, class Registry>
[[nodiscard]] Tag decodeTag(const Decoder& decoder, const Registry& registry) {
    decoder.require(JSONKind::string);
    if (const std::optional<Tag> tag = fromRawValue<Tag>(decoder.value().string())) return *tag;
    std::vector<std::string_view> words;
    for (const Tag tag : enumerators<Tag>)
        if (registry[indexOf(tag)]) words.push_back(rawValue(tag));
    failUnknownKeyword(decoder, Keywords<Tag>::typeName, words);
}

/// Decodes the tag and then, from the same object, the record that is registered for it. Some tags are reserved and
/// have none.
template <class Tagged, class Tag, class Registry>
[[nodiscard]] Tagged decodeTagged(const Decoder& decoder, const Registry& registry) {
    static constexpr std::array keys{typeKey};
    try {
        Meter::ofThisThread().step();
    } catch (TavrinError& error) {
        error.codingPath = decoder.codingPath();
        error.isRooted = true;
        throw;
    }
    decoder.require(JSONKind::object);
    const JSONElement type = decoder.value().findMember<keys>();
    if (!type.exists()) decoder.failKeyNotFound(typeKey);
    const Decoder typeDecoder = decoder.member(typeKey, type);
    const Tag tag = decodeTag<Tag>(typeDecoder, registry);
    if (const auto decodeRecord = registry[indexOf(tag)]) return decodeRecord(decoder);
    typeDecoder.failDataCorrupted("Type unsupported");
}

}  // namespace tavrin
