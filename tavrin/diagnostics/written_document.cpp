// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_document.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "tavrin/dsl/structure.h"

namespace tavrin {
namespace {

bool isRecord(ValueKind kind) { return kind == ValueKind::nodeRecord || kind == ValueKind::part; }

/// The one of some things that is called so; null where there is none.
template <class Things, class NameOf>
auto* find(const Things& things, std::string_view name, NameOf nameOf) {
    const auto found = std::ranges::find(things, name, nameOf);
    return found == things.end() ? nullptr : &*found;
}

/// A record that a property holds directly: a node's, or a part.
const LanguageRecord* findHeld(std::string_view name) {
    const LanguageRecord* const node = find(documentLanguage().nodes, name, &LanguageRecord::name);
    return node ? node : find(documentLanguage().parts, name, &LanguageRecord::name);
}

/// The entries that references lead to from one of them, itself included.
std::set<JSONOutline::Index> reached(JSONOutline::Index start,
                                     const std::map<JSONOutline::Index, std::vector<JSONOutline::Index>>& references) {
    std::set<JSONOutline::Index> found;
    std::vector<JSONOutline::Index> pending{start};
    while (!pending.empty()) {
        const JSONOutline::Index entry = pending.back();
        pending.pop_back();
        if (!found.insert(entry).second) continue;
        const auto next = references.find(entry);
        if (next != references.end()) pending.insert(pending.end(), next->second.begin(), next->second.end());
    }
    return found;
}

/// The tags that have a record.
std::span<const std::string_view> tagsOf(bool areNodes) {
    const auto namesOf = [](const std::vector<LanguageRecord>& records) {
        std::vector<std::string_view> names;
        names.reserve(records.size());
        for (const LanguageRecord& record : records) names.push_back(record.name);
        return names;
    };
    static const std::vector<std::string_view> nodes = namesOf(documentLanguage().nodes);
    static const std::vector<std::string_view> modifiers = namesOf(documentLanguage().modifiers);
    return areNodes ? nodes : modifiers;
}

}  // namespace

/// An object that is to be read as a record.
struct WrittenDocument::Pending {
    Index object;
    ValueKind kind;              // node, modifier or one of the records
    const LanguageRecord* type;  // of a record
    Index entry;
};

WrittenDocument::WrittenDocument(std::string_view text) : outline_(text) {
    recordByObject_.resize(outline_.values().size());
    drawn_.resize(outline_.values().size());
    std::vector<Pending> pending{{0, ValueKind::part, &documentLanguage().document, 0}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        std::vector<Pending> more;
        read(next, more);
        pending.insert(pending.end(), more.rbegin(), more.rend());
    }
    findDrawn();
}

void WrittenDocument::read(const Pending& pending, std::vector<Pending>& more) {
    if (outline_.values().empty() || outline_[pending.object].end == 0 || !outline_.isObject(pending.object)) return;
    WrittenRecord record{.object = pending.object, .type = pending.type, .entry = pending.entry};
    if (!isRecord(pending.kind)) {
        outline_.forEachChild(pending.object, [&](Index member) {
            if (!record.tag && outline_.key(member) == typeKey) record.tag = member;
        });
        if (!record.tag || !outline_.isString(*record.tag)) return;
        const bool isNode = pending.kind == ValueKind::node;
        const Language& language = documentLanguage();
        const std::vector<LanguageRecord>& tagged = isNode ? language.nodes : language.modifiers;
        record.type = find(tagged, outline_.string(*record.tag), &LanguageRecord::name);
        if (!record.type) return wrongWords_.push_back({*record.tag, tagsOf(isNode)});
    }
    readMembers(record, more);
    recordByObject_[record.object] = static_cast<std::uint32_t>(records_.size() + 1);
    records_.push_back(std::move(record));
}

void WrittenDocument::readMembers(WrittenRecord& record, std::vector<Pending>& more) {
    std::unordered_set<std::string> seen;
    outline_.forEachChild(record.object, [&](Index value) {
        std::string key = outline_.key(value);
        WrittenMember member{.value = value, .field = find(record.type->fields, key, &LanguageField::key)};
        member.isRepeated = !seen.insert(std::move(key)).second;
        if (member.field && !member.isRepeated) readValue(*member.field, value, record.entry, more);
        record.members.push_back(member);
    });
    const auto isProperty = [](const WrittenMember& member) { return member.field && !member.isRepeated; };
    const auto others = std::stable_partition(record.members.begin(), record.members.end(), isProperty);
    record.propertyCount = static_cast<std::size_t>(others - record.members.begin());
}

void WrittenDocument::readValue(const LanguageField& field, Index value, Index entry, std::vector<Pending>& more) {
    const auto readOne = [&](Index one, Index inEntry) {
        const bool isKeyword = field.kind == ValueKind::keyword && !field.isLossless;
        if (field.kind == ValueKind::node || field.kind == ValueKind::modifier)
            more.push_back({one, field.kind, nullptr, inEntry});
        else if (isRecord(field.kind))
            more.push_back({one, field.kind, findHeld(field.record), inEntry});
        else if (isKeyword && outline_.isString(one) &&
                 std::ranges::find(field.words, outline_.string(one)) == field.words.end())
            wrongWords_.push_back({one, field.words});
    };
    if (field.isNamed && outline_.isObject(value)) {
        outline_.forEachChild(value, [&](Index child) {
            if (entries_.emplace(outline_.key(child), child).second) readOne(child, child);
        });
    } else if (field.isList && outline_.isArray(value)) {
        outline_.forEachChild(value, [&](Index child) { readOne(child, entry); });
    } else if (!field.isNamed && !field.isList) {
        readOne(value, entry);
    }
}

const WrittenRecord* WrittenDocument::recordAt(Index object) const {
    const std::uint32_t number = recordByObject_[object];
    return number == 0 ? nullptr : &records_[number - 1];
}

bool WrittenDocument::isDrawn(Index entry) const { return drawn_[entry]; }

void WrittenDocument::findDrawn() {
    for (const WrittenRecord& record : records_) {
        const WrittenMember* const name = record.tag ? memberOf<&RefNode::name>(record) : nullptr;
        if (!name || !outline_.isString(name->value)) continue;
        const auto entry = entries_.find(outline_.string(name->value));
        if (entry != entries_.end()) references_[record.entry].push_back(entry->second);
    }
    const auto main = entries_.find("main");
    if (main == entries_.end()) return;
    for (const Index entry : reached(main->second, references_)) drawn_[entry] = true;
}

std::set<JSONOutline::Index> WrittenDocument::entriesThatDraw(Index entry) const {
    References backwards;
    for (const auto& [from, to] : references_)
        for (const Index drawn : to) backwards[drawn].push_back(from);
    return reached(entry, backwards);
}

const WrittenMember* memberOf(const WrittenRecord& record, std::string_view key) {
    return find(record.properties(), key, [](const WrittenMember& member) { return member.field->key; });
}

}  // namespace tavrin
