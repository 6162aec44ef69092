// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <limits>
#include <list>
#include <unordered_set>
#include <utility>

namespace tavrin {

/// Values by key. Where all would cost more than they may, or there would be too many, those that were not asked for
/// the longest time go. Keys may be looked up by whatever `Hash` takes and `==` compares with them. One thread at a
/// time.
template <class Key, class Value, class Hash = std::hash<Key>>
class LRUCache {
public:
    struct Entry {
        Key key;
        Value value;
        std::size_t cost;
    };
    /// What went. Who has a lock destroys it without.
    using Dropped = std::list<Entry>;

    static constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

    explicit LRUCache(std::size_t maximumCost, std::size_t maximumCount = unlimited)
        : maximumCost_(maximumCost), maximumCount_(maximumCount) {}

    /// The value of a key, which becomes the one that was asked for last; null where there is none. Good until
    /// something is inserted.
    template <class Lookup>
    [[nodiscard]] Value* find(const Lookup& key) {
        const auto found = index_.find(key);
        if (found == index_.end()) return nullptr;
        entries_.splice(entries_.begin(), entries_, *found);
        return &entries_.front().value;
    }
    /// Whether `find` would find one; does not count as asking for it.
    template <class Lookup>
    [[nodiscard]] bool contains(const Lookup& key) const {
        return index_.contains(key);
    }

    /// Gives a key another value. One that costs more than all may is not kept.
    Dropped insert(Key key, Value value, std::size_t cost = 1) {
        Dropped dropped;
        if (const auto known = index_.find(key); known != index_.end()) drop(*known, dropped);
        if (cost > maximumCost_) return dropped;
        entries_.push_front({std::move(key), std::move(value), cost});
        try {
            index_.insert(entries_.begin());
        } catch (...) {
            entries_.pop_front();
            throw;
        }
        cost_ += cost;
        evict(dropped);
        return dropped;
    }

    Dropped setMaximumCost(std::size_t cost) {
        Dropped dropped;
        maximumCost_ = cost;
        evict(dropped);
        return dropped;
    }

    [[nodiscard]] std::size_t maximumCost() const { return maximumCost_; }
    /// What all cost now.
    [[nodiscard]] std::size_t cost() const { return cost_; }
    [[nodiscard]] std::size_t count() const { return entries_.size(); }

private:
    using Place = typename std::list<Entry>::iterator;
    struct PlaceHash {
        using is_transparent = void;
        std::size_t operator()(const Place& place) const { return Hash{}(place->key); }
        template <class Lookup>
        std::size_t operator()(const Lookup& key) const {
            return Hash{}(key);
        }
    };
    struct PlaceEqual {
        using is_transparent = void;
        bool operator()(const Place& a, const Place& b) const { return a->key == b->key; }
        template <class Lookup>
        bool operator()(const Place& place, const Lookup& key) const {
            return place->key == key;
        }
        template <class Lookup>
        bool operator()(const Lookup& key, const Place& place) const {
            return place->key == key;
        }
    };

    void drop(Place place, Dropped& dropped) {
        index_.erase(place);
        cost_ -= place->cost;
        dropped.splice(dropped.end(), entries_, place);
    }
    void evict(Dropped& dropped) {
        while (cost_ > maximumCost_ || entries_.size() > maximumCount_) drop(std::prev(entries_.end()), dropped);
    }

    std::size_t maximumCost_;
    std::size_t maximumCount_;
    std::size_t cost_ = 0;
    std::list<Entry> entries_;                                // the last asked for first
    std::unordered_set<Place, PlaceHash, PlaceEqual> index_;  // by the entries' own keys
};

}  // namespace tavrin
