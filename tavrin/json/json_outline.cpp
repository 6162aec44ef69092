// SPDX-License-Identifier: MIT
#include "tavrin/json/json_outline.h"

#include <algorithm>
#include <utility>

#include "tavrin/json/json_scan.h"

namespace tavrin {

JSONOutline::JSONOutline(std::string_view text) : text_(text.substr(0, maximumBytes)) {
    read();
    if (values_.empty()) values_.push_back({.last = 1});
}

/// Adds a value that begins there, without its end.
void JSONOutline::beginValue(std::size_t at, std::vector<Index>& open) {
    values_.push_back({.begin = static_cast<std::uint32_t>(at), .parent = open.empty() ? 0 : open.back()});
}

void JSONOutline::read() {
    std::vector<Index> open;                 // the containers that are not ended yet
    std::vector<std::uint32_t> counts;       // how many children each has
    std::uint32_t keyBegin = 0, keyEnd = 0;  // of the member whose value comes next
    const auto add = [&](std::size_t at, std::size_t end) {
        beginValue(at, open);
        Value& value = values_.back();
        value.end = static_cast<std::uint32_t>(end);
        value.last = static_cast<Index>(values_.size());
        value.keyBegin = std::exchange(keyBegin, 0);
        value.keyEnd = std::exchange(keyEnd, 0);
        if (!counts.empty()) value.position = counts.back()++;
    };
    for (std::size_t at = skipBlanks(text_, 0); at < text_.size(); at = skipBlanks(text_, at)) {
        const char c = text_[at];
        if (c == ',' || c == ':') {
            ++at;
        } else if (c == '{' || c == '[') {
            add(at, text_.size());
            open.push_back(static_cast<Index>(values_.size() - 1));
            counts.push_back(0);
            ++at;
        } else if (c == '}' || c == ']') {
            ++at;
            if (open.empty()) continue;
            values_[open.back()].end = static_cast<std::uint32_t>(at);
            values_[open.back()].last = static_cast<Index>(values_.size());
            open.pop_back();
            counts.pop_back();
        } else {
            const std::size_t end = c == '"' ? skipString(text_, at) : std::max(skipScalar(text_, at), at + 1);
            const bool isKey = c == '"' && keyEnd == 0 && !open.empty() && text_[values_[open.back()].begin] == '{';
            if (isKey) {
                keyBegin = static_cast<std::uint32_t>(at);
                keyEnd = static_cast<std::uint32_t>(end);
            } else {
                add(at, end);
            }
            at = end;
        }
    }
    for (const Index index : open) values_[index].last = static_cast<Index>(values_.size());
}

std::string_view JSONOutline::raw(Index index) const {
    const Value& value = values_[index];
    return text_.substr(value.begin, value.end - value.begin);
}

namespace {

std::string withoutQuotes(std::string_view raw) {
    return raw.size() < 2 ? std::string() : unescaped(raw.substr(1, raw.size() - 2));
}

}  // namespace

std::string JSONOutline::string(Index index) const { return withoutQuotes(raw(index)); }

std::string JSONOutline::key(Index index) const {
    const Value& value = values_[index];
    return withoutQuotes(text_.substr(value.keyBegin, value.keyEnd - value.keyBegin));
}

CodingPath JSONOutline::path(Index index) const {
    CodingPath path;
    for (; index != 0; index = values_[index].parent) {
        if (values_[index].hasKey())
            path.emplace_back(key(index));
        else
            path.emplace_back(std::size_t{values_[index].position});
    }
    std::reverse(path.begin(), path.end());
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
