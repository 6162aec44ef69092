// SPDX-License-Identifier: MIT
#include "tavrin/json/json.h"

#include <algorithm>
#include <numeric>

namespace tavrin {
namespace {

constexpr std::size_t largestScanned = 16;  // up to here a look-up walks the members

/// Reads a value where it stays.
void read(JSONElement element, JSON::Value& value);

JSONArray readArray(JSONElement array) {
    JSONArray elements;
    elements.reserve(array.size());
    for (JSONElement::Walk walk(array); walk.next();) read(walk.value(), elements.emplace_back().object());
    return elements;
}

JSONObject::Members readMembers(JSONElement object) {
    JSONObject::Members members;
    members.reserve(object.size());
    for (JSONElement::Walk walk(object); walk.next();)
        read(walk.value(), members.emplace_back(walk.key(), JSON()).second.object());
    return members;
}

void read(JSONElement element, JSON::Value& value) {
    switch (element.kind()) {
        case JSONKind::null: value = nullptr; return;
        case JSONKind::boolean: value = element.boolean(); return;
        case JSONKind::integer: value = element.integer(); return;
        case JSONKind::unsigned_: value = element.unsignedInteger(); return;
        case JSONKind::floating: value = element.floating(); return;
        case JSONKind::string: value.emplace<SharedText>(element.string()); return;
        case JSONKind::array: value.emplace<JSONArray>(readArray(element)); return;
        case JSONKind::object: value.emplace<JSONObject>(readMembers(element)); return;
    }
}

JSON fromElement(JSONElement element) {
    JSON json;
    read(element, json.object());
    return json;
}

struct WriteValue {
    JSONWriter& writer;

    template <class Scalar>
    void operator()(const Scalar& value) const {
        writer.value(value);
    }
    void operator()(const SharedText& text) const { writer.value(text.view()); }
    void operator()(const JSONArray& elements) const {
        writer.beginArray();
        for (const JSON& element : elements) encode(element, writer);
        writer.endArray();
    }
    void operator()(const JSONObject& object) const {
        writer.beginObject();
        for (const auto& [key, value] : object.members()) encode(value, writer.key(key));
        writer.endObject();
    }
};

}  // namespace

JSONObject::JSONObject(Members members) : members_(std::move(members)) {
    if (members_.size() <= largestScanned) return;
    byKey_.resize(members_.size());
    std::iota(byKey_.begin(), byKey_.end(), std::uint32_t{0});
    // Stable, so that the first of equal keys comes first and is the one a look-up meets.
    std::ranges::stable_sort(
        byKey_, [&](std::uint32_t a, std::uint32_t b) { return members_[a].first.view() < members_[b].first.view(); });
}

const JSON* JSONObject::find(std::string_view key) const {
    if (byKey_.empty()) {
        for (const Member& member : members_)
            if (member.first == key) return &member.second;
        return nullptr;
    }
    const auto found =
        std::lower_bound(byKey_.begin(), byKey_.end(), key,
                         [&](std::uint32_t index, std::string_view k) { return members_[index].first.view() < k; });
    return found == byKey_.end() || members_[*found].first != key ? nullptr : &members_[*found].second;
}

JSON JSON::parse(std::string_view text) {
    const JSONText parsed(text);
    return fromElement(parsed.root());
}

const JSON* JSON::find(std::string_view key) const {
    const auto* dictionary = std::get_if<JSONObject>(&value_);
    return dictionary == nullptr ? nullptr : dictionary->find(key);
}

const JSON* JSON::find(std::int64_t index) const {
    const auto* array = std::get_if<JSONArray>(&value_);
    if (array == nullptr || index < 0 || static_cast<std::uint64_t>(index) >= array->size()) return nullptr;
    return &(*array)[static_cast<std::size_t>(index)];
}

std::string JSON::description() const {
    if (const auto* text = std::get_if<SharedText>(&value_)) return std::string(*text);
    if (const auto* truth = std::get_if<bool>(&value_)) return *truth ? "true" : "false";
    if (const auto* number = std::get_if<std::int64_t>(&value_)) return toText(*number);
    if (const auto* number = std::get_if<std::uint64_t>(&value_)) return toText(*number);
    if (const auto* number = std::get_if<double>(&value_)) return toText(*number);
    JSONWriter writer(JSONWriter::Style::compact);
    encode(*this, writer);
    return std::move(writer).text();
}

JSON Coding<JSON>::decode(const Decoder& decoder) { return fromElement(decoder.value()); }

void Coding<JSON>::encode(const JSON& value, JSONWriter& writer) { std::visit(WriteValue{writer}, value.object()); }

}  // namespace tavrin
