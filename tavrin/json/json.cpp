#include "tavrin/json/json.h"

#include <algorithm>
#include <numeric>

namespace tavrin {
namespace {

constexpr std::size_t largestScanned = 16;  // up to here a look-up walks the members

JSON fromElement(JSONElement element) {
    switch (element.kind()) {
        case JSONKind::null: return {};
        case JSONKind::boolean: return JSON::Value(element.boolean());
        case JSONKind::integer: return JSON::Value(element.integer());
        case JSONKind::unsigned_: return JSON::Value(element.unsignedInteger());
        case JSONKind::floating: return JSON::Value(element.floating());
        case JSONKind::string: return JSON::Value(std::in_place_type<std::string>, element.string());
        case JSONKind::array: {
            std::vector<JSON> elements;
            elements.reserve(element.size());
            for (JSONElement::Walk walk(element); walk.next();) elements.push_back(fromElement(walk.value()));
            return JSON::Value(std::move(elements));
        }
        case JSONKind::object: {
            std::vector<JSONObject::Member> members;
            members.reserve(element.size());
            for (JSONElement::Walk walk(element); walk.next();)
                members.emplace_back(std::string(walk.key()), fromElement(walk.value()));
            return JSON::Value(JSONObject(std::move(members)));
        }
    }
    return {};
}

struct WriteValue {
    JSONWriter& writer;

    template <class Scalar>
    void operator()(const Scalar& value) const {
        writer.value(value);
    }
    void operator()(const std::vector<JSON>& elements) const { encode(elements, writer); }
    void operator()(const JSONObject& object) const {
        writer.beginObject();
        for (const auto& [key, value] : object.members()) encode(value, writer.key(key));
        writer.endObject();
    }
};

}  // namespace

JSONObject::JSONObject(std::vector<Member> members) : members_(std::move(members)) {
    if (members_.size() <= largestScanned) return;
    byKey_.resize(members_.size());
    std::iota(byKey_.begin(), byKey_.end(), std::uint32_t{0});
    // Stable, so that the first of equal keys comes first and is the one a look-up meets.
    std::stable_sort(byKey_.begin(), byKey_.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return members_[a].first < members_[b].first; });
}

const JSON* JSONObject::find(std::string_view key) const {
    if (byKey_.empty()) {
        const auto found = std::find_if(members_.begin(), members_.end(), [&](const Member& m) { return m.first == key; });
        return found == members_.end() ? nullptr : &found->second;
    }
    const auto found = std::lower_bound(byKey_.begin(), byKey_.end(), key,
                                        [&](std::uint32_t index, std::string_view k) { return members_[index].first < k; });
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
    const auto* array = std::get_if<std::vector<JSON>>(&value_);
    if (array == nullptr || index < 0 || static_cast<std::uint64_t>(index) >= array->size()) return nullptr;
    return &(*array)[static_cast<std::size_t>(index)];
}

std::string JSON::description() const {
    if (const auto* text = std::get_if<std::string>(&value_)) return *text;
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
