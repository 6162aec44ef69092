// SPDX-License-Identifier: MIT
#include "cli/matrix/model_key.h"

#include <algorithm>

#include "cli/usage_error.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin::cli {
namespace {

using Kind = DecodingError::Kind;

[[noreturn]] void fail(Kind kind, CodingPath way, std::string message) {
    DecodingError error(kind, std::move(way), std::move(message));
    error.role = TextRole::model;
    throw error;
}

[[noreturn]] void failMissing(CodingPath way, const std::string& key) {
    DecodingError error(Kind::keyNotFound, std::move(way),
                        "the key \"" + key + "\", for the picture's name, is missing");
    error.role = TextRole::model;
    error.key = key;
    throw error;
}

JSONElement memberOf(const JSONElement& object, std::string_view key) {
    for (JSONElement::Walk walk(object); walk.next();)
        if (walk.key() == key) return walk.value();
    return {};
}

std::string numberText(const JSONElement& number) {
    JSONWriter writer(JSONWriter::Style::compact);
    switch (number.kind()) {
        case JSONKind::integer: writer.value(number.integer()); break;
        case JSONKind::unsigned_: writer.value(number.unsignedInteger()); break;
        default: writer.value(number.floating());
    }
    return std::move(writer).text();
}

/// Why no file can have a name; empty where one can.
std::string faultOf(std::string_view name, std::size_t room) {
    if (name.empty()) return "it is empty";
    if (name == "." || name == "..") return "\"" + std::string(name) + "\" is a folder";
    if (name.find('/') != std::string_view::npos) return "it has a \"/\"";
    if (std::any_of(name.begin(), name.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }))
        return "it has a control character";
    if (name.size() > room)
        return "it has " + std::to_string(name.size()) + " bytes; at most " + std::to_string(room) + " fit";
    return "";
}

}  // namespace

ModelKey::ModelKey(std::string_view text) {
    for (;;) {
        const std::string_view key = text.substr(0, text.find('.'));
        if (key.empty())
            throw UsageError(
                "--key takes the key, or keys with dots between them, of what names a picture: id or "
                "person.id, not one that is empty");
        keys_.emplace_back(key);
        if (key.size() == text.size()) return;
        text.remove_prefix(key.size() + 1);
    }
}

std::string ModelKey::nameIn(const JSONElement& model, std::size_t room) const {
    JSONElement value = model;
    CodingPath way;
    for (const std::string& key : keys_) {
        if (value.kind() != JSONKind::object)
            fail(Kind::typeMismatch, way,
                 "expected an object with the key \"" + key + "\", for the picture's name, found " +
                     std::string(describe(value.kind())));
        value = memberOf(value, key);
        if (!value.exists()) failMissing(way, key);
        way.emplace_back(key);
    }
    std::string name;
    switch (value.kind()) {
        case JSONKind::string: name = value.string(); break;
        case JSONKind::integer:
        case JSONKind::unsigned_:
        case JSONKind::floating: name = numberText(value); break;
        default:
            fail(Kind::typeMismatch, way,
                 "expected a string or a number, for the picture's name, found " + std::string(describe(value.kind())));
    }
    if (const std::string fault = faultOf(name, room); !fault.empty())
        fail(Kind::dataCorrupted, way, "this cannot name a picture's file: " + fault);
    return name;
}

void ModelKey::failTaken(const std::string& name) const {
    fail(Kind::dataCorrupted, {keys_.begin(), keys_.end()},
         "an earlier line's picture is called \"" + name + "\", too");
}

}  // namespace tavrin::cli
