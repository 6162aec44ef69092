// SPDX-License-Identifier: MIT
#include "tavrin/json/json_outline.h"

#include <algorithm>
#include <utility>

#include "tavrin/json/json_scan.h"
#include "tavrin/platform/foundation/budget/meter.h"

namespace tavrin {

JSONOutline::JSONOutline(std::string_view text) : text_(text.substr(0, maximumBytes)) {
    using Event = JSONScanner::Event;
    struct Container {
        Index index;
        std::uint32_t children = 0;
    };
    std::vector<Container> open;             // those that are not ended yet
    std::uint32_t keyBegin = 0, keyEnd = 0;  // of the member whose value comes next
    for (JSONScanner scanner(text_); scanner.next();) {
        const auto begin = static_cast<std::uint32_t>(scanner.begin());
        const auto end = static_cast<std::uint32_t>(scanner.end());
        const auto count = static_cast<Index>(values_.size());
        switch (scanner.event()) {
            case Event::key:
                keyBegin = begin;
                keyEnd = end;
                break;
            case Event::end:
                values_[open.back().index].end = end;
                values_[open.back().index].last = count;
                open.pop_back();
                break;
            default:
                Meter::ofThisThread().step();
                values_.push_back({.begin = begin,
                                   .end = end,
                                   .keyBegin = std::exchange(keyBegin, 0),
                                   .keyEnd = std::exchange(keyEnd, 0),
                                   .parent = open.empty() ? 0 : open.back().index,
                                   .last = count + 1,
                                   .position = open.empty() ? 0 : open.back().children++});
                if (scanner.event() != Event::scalar) open.push_back({count});
        }
    }
    for (const Container& container : open) values_[container.index].last = static_cast<Index>(values_.size());
    if (values_.empty()) values_.push_back({.last = 1});
}

std::string_view JSONOutline::raw(Index index) const {
    const Value& value = values_[index];
    return text_.substr(value.begin, value.end - value.begin);
}

std::string JSONOutline::string(Index index) const { return JSONScanner::unquoted(raw(index)); }

std::string JSONOutline::key(Index index) const {
    const Value& value = values_[index];
    return JSONScanner::unquoted(text_.substr(value.keyBegin, value.keyEnd - value.keyBegin));
}

CodingPath JSONOutline::path(Index index) const {
    CodingPath path;
    for (; index != 0; index = values_[index].parent) {
        if (values_[index].hasKey())
            path.emplace_back(key(index));
        else
            path.emplace_back(std::size_t{values_[index].position});
    }
    std::ranges::reverse(path);
    return path;
}

std::optional<JSONOutline::Index> OutlinePaths::find(const CodingPath& path) {
    const auto [found, steps] = follow(path);
    return steps == path.size() ? std::optional(found) : std::nullopt;
}

std::pair<JSONOutline::Index, std::size_t> OutlinePaths::follow(const CodingPath& path) {
    Index at = 0;
    for (std::size_t steps = 0; steps < path.size(); ++steps) {
        const Index next = child(at, path[steps]);
        if (next == 0) return {at, steps};  // the root is no one's child
        at = next;
    }
    return {at, path.size()};
}

/// The child that a step leads to; 0 for none. The first few are looked at in turn, and only then all are listed.
JSONOutline::Index OutlinePaths::child(Index parent, const CodingKey& step) {
    constexpr std::size_t few = 16;
    const Index behind = outline_[parent].last;
    Index child = parent + 1;
    if (child >= behind) return 0;
    const auto* const key = std::get_if<std::string>(&step);
    if (key ? !outline_.isObject(parent) : !outline_.isArray(parent)) return 0;
    for (std::size_t i = 0; i < few && child < behind; ++i, child = outline_[child].last) {
        ++visited_;
        if (key ? outline_.key(child) == *key : i == std::get<std::size_t>(step)) return child;
    }
    if (child >= behind) return 0;
    const Children& children = childrenOf(parent);
    ++visited_;
    if (key) {
        const auto member = children.members.find(*key);
        return member == children.members.end() ? 0 : member->second;
    }
    const std::size_t index = std::get<std::size_t>(step);
    return index < children.elements.size() ? children.elements[index] : 0;
}

const OutlinePaths::Children& OutlinePaths::childrenOf(Index parent) {
    const auto [entry, isNew] = children_.try_emplace(parent);
    Children& children = entry->second;
    if (!isNew) return children;
    outline_.forEachChild(parent, [&](Index child) {
        ++visited_;
        if (outline_.isObject(parent))
            children.members.emplace(outline_.key(child), child);
        else
            children.elements.push_back(child);
    });
    return children;
}

}  // namespace tavrin
