// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/further_errors.h"

#include <algorithm>

#include "tavrin/dsl/structure.h"

namespace tavrin {
namespace {

/// What may stand wherever a node or modifier may, and holds nothing.
constexpr std::string_view plainNode = R"({"type":"spacer"})";
/// Types that ask nothing of a node but that it has children, or nothing at all.
constexpr std::string_view plainHolder = R"("zstack")";
constexpr std::string_view plainType = R"("spacer")";
constexpr std::string_view childrenKey = keyOf<&ZStackNode::children>;
/// A key that no record has.
constexpr std::string_view noKey = R"("_")";

const std::string& plainModifier() {
    static const std::string text = [] {
        const auto& modifiers = documentLanguage().modifiers;
        const auto takesNothing = [](const LanguageRecord& modifier) {
            return std::ranges::none_of(modifier.fields, &LanguageField::isRequired);
        };
        return R"({"type":")" + std::string(std::ranges::find_if(modifiers, takesNothing)->name) + "\"}";
    }();
    return text;
}

/// What a key takes that cannot be left out; empty where nobody knows.
std::string plainValue(const LanguageField& field) {
    if (field.isList) return "[]";
    if (field.isNamed) return "{}";
    switch (field.kind) {
        case ValueKind::text: return R"("")";
        case ValueKind::boolean: return "false";
        case ValueKind::integer:
        case ValueKind::number: return "0";
        case ValueKind::keyword: return '"' + std::string(field.words.front()) + '"';
        case ValueKind::node: return std::string(plainNode);
        case ValueKind::modifier: return plainModifier();
        case ValueKind::nodeRecord:
        case ValueKind::part: return {};
    }
    return {};
}

}  // namespace

FurtherErrors::Verdict FurtherErrors::takeOut(const PlacedError& error) {
    if (!error.isRooted || error.role != TextRole::document) return Verdict::astray;
    const std::optional<Index> place = OutlinePaths(outline()).find(error.codingPath);
    const auto* const decoding = dynamic_cast<const DecodingError*>(&error);
    if (!place || *place == 0 || (decoding && decoding->offset)) return Verdict::astray;
    // What lacks something cannot be looked at further.
    const bool isMissing = decoding && decoding->key;
    const Index object = isMissing ? *place : outline()[*place].parent;
    const bool isMade = spoilt_.contains(toText(outline().path(object)));
    if (!(isMissing ? replace(*place) : takeOutValue(*place))) return Verdict::astray;
    return isMade ? Verdict::made : Verdict::real;
}

/// From the value up to what can be taken out by itself: a node or modifier in a list, a type, a member of a record.
bool FurtherErrors::takeOutValue(Index value) {
    for (; value != 0; value = outline()[value].parent) {
        const Index parent = outline()[value].parent;
        if (outline().key(value) == typeKey && isNode(parent)) return changeType(parent, value);
        const WrittenRecord* const record = written_->recordAt(parent);
        if (record && record->tag == value) return replace(parent);
        if (record) return parent != 0 && hide(value);
        const WrittenMember* const owner = ownerOf(value);
        if (owner && parent == owner->value && owner->field->kind == ValueKind::modifier) return replace(value);
        if (isNode(value)) return replace(value);
    }
    return false;
}

/// The property that holds a value, or the list or object that it stands in.
const WrittenMember* FurtherErrors::ownerOf(Index value) const {
    for (; value != 0; value = outline()[value].parent) {
        const WrittenRecord* const record = written_->recordAt(outline()[value].parent);
        if (!record) continue;
        const auto properties = record->properties();
        const auto member = std::ranges::find(properties, value, &WrittenMember::value);
        return member == properties.end() ? nullptr : &*member;
    }
    return nullptr;
}

/// Whether a node should stand there: as a property, or in a property's list or object.
bool FurtherErrors::isNode(Index value) const {
    const WrittenMember* const owner = ownerOf(value);
    if (!owner || owner->field->kind != ValueKind::node) return false;
    const bool holdsMany = owner->field->isList || owner->field->isNamed;
    return owner->value == (holdsMany ? outline()[value].parent : value);
}

/// An unknown node may hold children, whatever it is, and has modifiers.
bool FurtherErrors::changeType(Index object, Index tag) {
    spoilt_.insert(toText(outline().path(object)));
    bool hasChildren = false;
    outline().forEachChild(object, [&](Index member) { hasChildren |= outline().key(member) == childrenKey; });
    return edit(outline()[tag].begin, outline()[tag].end, hasChildren ? plainHolder : plainType);
}

/// Leaves a member out; one that is required gets another value.
bool FurtherErrors::hide(Index member) {
    const WrittenMember* const owner = ownerOf(member);
    const std::string plain = owner && owner->field->isRequired ? plainValue(*owner->field) : "";
    if (!plain.empty() && edit(outline()[member].begin, outline()[member].end, plain)) return true;
    spoilt_.insert(toText(outline().path(outline()[member].parent)));
    return edit(outline()[member].keyBegin, outline()[member].keyEnd, noKey);
}

/// Puts a plain node or modifier in the place of another; hides what is neither.
bool FurtherErrors::replace(Index value) {
    const WrittenMember* const owner = ownerOf(value);
    if (!owner) return false;
    if (isNode(value)) return edit(outline()[value].begin, outline()[value].end, plainNode);
    if (owner->field->kind != ValueKind::modifier) return hide(owner->value);
    return edit(outline()[value].begin, outline()[value].end, plainModifier());
}

/// False where that changes nothing, and so does not help.
bool FurtherErrors::edit(std::size_t begin, std::size_t end, std::string_view text) {
    if (std::string_view(text_).substr(begin, end - begin) == text) return false;
    text_.replace(begin, end - begin, text);
    written_.emplace(text_);
    return true;
}

}  // namespace tavrin
