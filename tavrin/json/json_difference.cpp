// SPDX-License-Identifier: MIT
#include "tavrin/json/json_difference.h"

#include <algorithm>
#include <string>
#include <variant>

namespace tavrin {
namespace {

bool isContainer(const JSON& value) {
    return std::holds_alternative<JSONObject>(value.object()) || std::holds_alternative<JSONArray>(value.object());
}

bool holdsContainers(const JSONArray& array) { return std::ranges::any_of(array, isContainer); }

/// Compares two values side by side.
class Comparison {
public:
    explicit Comparison(std::size_t most) : most_(most) {}

    void compare(const JSON& before, const JSON& after) {
        if (found_.size() >= most_) return;
        const auto* object = std::get_if<JSONObject>(&before.object());
        const auto* otherObject = std::get_if<JSONObject>(&after.object());
        if (object && otherObject) return compareMembers(*object, *otherObject);
        const auto* array = std::get_if<JSONArray>(&before.object());
        const auto* otherArray = std::get_if<JSONArray>(&after.object());
        if (array && otherArray && (holdsContainers(*array) || holdsContainers(*otherArray)))
            return compareElements(*array, *otherArray);
        const bool isSameKind = before.object().index() == after.object().index();
        if (!isSameKind || before.description() != after.description()) note(&before, &after);
    }

    std::vector<JSONDifference> found() && { return std::move(found_); }

private:
    void compareMembers(const JSONObject& before, const JSONObject& after) {
        for (const auto& [key, member] : before.members())
            compareAt(std::string(key.view()), &member, after.find(key.view()));
        for (const auto& [key, member] : after.members())
            if (!before.find(key.view())) compareAt(std::string(key.view()), nullptr, &member);
    }

    void compareElements(const JSONArray& before, const JSONArray& after) {
        for (std::size_t at = 0; at < std::max(before.size(), after.size()); ++at)
            compareAt(at, at < before.size() ? &before[at] : nullptr, at < after.size() ? &after[at] : nullptr);
    }

    template <class Key>
    void compareAt(const Key& key, const JSON* before, const JSON* after) {
        way_.emplace_back(key);
        if (before && after)
            compare(*before, *after);
        else
            note(before, after);
        way_.pop_back();
    }

    void note(const JSON* before, const JSON* after) {
        if (found_.size() < most_) found_.push_back({way_, before, after});
    }

    std::size_t most_;
    CodingPath way_;
    std::vector<JSONDifference> found_;
};

}  // namespace

std::vector<JSONDifference> differences(const JSON& before, const JSON& after, std::size_t most) {
    Comparison comparison(most);
    comparison.compare(before, after);
    return std::move(comparison).found();
}

}  // namespace tavrin
