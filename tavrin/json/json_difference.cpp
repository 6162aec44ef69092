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

using KeyPredicate = std::function<bool(std::string_view key)>;

/// Compares two values side by side.
class Comparison {
public:
    Comparison(std::size_t most, const KeyPredicate& isSkipped) : most_(most), isSkipped_(isSkipped) {}

    void compare(const JSON& before, const JSON& after) {
        if (found_.areMore) return;
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

    JSONDifferences found() && { return std::move(found_); }

private:
    void compareMembers(const JSONObject& before, const JSONObject& after) {
        for (const auto& [key, member] : before.members()) compareMember(key.view(), &member, after.find(key.view()));
        for (const auto& [key, member] : after.members())
            if (!before.find(key.view())) compareMember(key.view(), nullptr, &member);
    }

    void compareMember(std::string_view key, const JSON* before, const JSON* after) {
        if (!isSkipped_ || !isSkipped_(key)) return compareAt(std::string(key), before, after);
        if (!before || !after || !isSame(*before, *after)) found_.areSkipped = true;
    }

    /// 1. Elements that are the same at the beginning and at the end of lists that are not equally long stand beside
    ///    each other: what lies between has come or gone.
    /// 2. Those in between stand beside each other from the first on. Their indices are the same in both lists.
    void compareElements(const JSONArray& before, const JSONArray& after) {
        std::size_t begin = 0;
        std::size_t behind = 0;
        if (before.size() != after.size()) {
            if (isFull()) return note(nullptr, nullptr);  // there is one more, whichever it is
            const std::size_t shorter = std::min(before.size(), after.size());
            while (begin < shorter && isSame(before[begin], after[begin])) ++begin;
            while (begin + behind < shorter &&
                   isSame(before[before.size() - 1 - behind], after[after.size() - 1 - behind]))
                ++behind;
        }
        const std::size_t end = before.size() - behind;
        const std::size_t otherEnd = after.size() - behind;
        for (std::size_t at = begin; at < std::max(end, otherEnd); ++at)
            compareAt(at, at < end ? &before[at] : nullptr, at < otherEnd ? &after[at] : nullptr);
    }

    /// Whether nothing differs but what is skipped.
    bool isSame(const JSON& before, const JSON& after) {
        Comparison inside(0, isSkipped_);
        inside.compare(before, after);
        if (inside.found_.areMore) return false;
        found_.areSkipped = found_.areSkipped || inside.found_.areSkipped;
        return true;
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

    [[nodiscard]] bool isFull() const { return found_.first.size() >= most_; }

    void note(const JSON* before, const JSON* after) {
        if (isFull())
            found_.areMore = true;
        else
            found_.first.push_back({way_, before, after});
    }

    std::size_t most_;
    const KeyPredicate& isSkipped_;
    CodingPath way_;
    JSONDifferences found_;
};

}  // namespace

JSONDifferences differences(const JSON& before, const JSON& after, std::size_t most, const KeyPredicate& isSkipped) {
    Comparison comparison(most, isSkipped);
    comparison.compare(before, after);
    return std::move(comparison).found();
}

}  // namespace tavrin
