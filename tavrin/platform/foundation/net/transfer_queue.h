// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tavrin {

/// Transfers that wait until few enough others are under way, in all and with their host. Urgent ones go first, and a
/// quarter of the room is theirs alone; hosts take turns, and the transfers of one host keep their order. Adding and
/// taking cost the same however many wait. Not thread-safe.
template <class Item>
class TransferQueue {
public:
    TransferQueue(std::size_t maximum, std::size_t maximumPerHost)
        : lanes_{{{maximum, maximumPerHost}, {withoutReserve(maximum), withoutReserve(maximumPerHost)}}} {}

    void add(const std::string& host, Item item, bool isUrgent) {
        Lane& lane = lanes_[isUrgent ? 0 : 1];
        std::deque<Item>& waiting = lane.waiting[host];
        if (waiting.empty()) lane.turns.push_back(host);
        waiting.push_back(std::move(item));
    }

    /// The next transfer that may begin, if any; it is under way from now on.
    std::optional<Item> next() {
        for (Lane& lane : lanes_)
            if (std::optional<Item> item = nextOf(lane)) return item;
        return std::nullopt;
    }

    /// A transfer with this host is over.
    void finished(const std::string& host) {
        --total_;
        const auto count = underWay_.find(host);
        if (--count->second == 0) underWay_.erase(count);
    }

    /// Everything that still waits.
    std::vector<Item> takeAll() {
        std::vector<Item> items;
        for (Lane& lane : lanes_) {
            for (auto& [host, waiting] : lane.waiting)
                std::move(waiting.begin(), waiting.end(), std::back_inserter(items));
            lane.waiting.clear();
            lane.turns.clear();
        }
        return items;
    }

private:
    /// What waits with one urgency.
    struct Lane {
        std::size_t maximum;
        std::size_t maximumPerHost;
        std::unordered_map<std::string, std::deque<Item>> waiting = {};
        std::deque<std::string> turns = {};  // the hosts with something waiting, each once
    };

    static std::size_t withoutReserve(std::size_t room) { return std::max<std::size_t>(1, room - room / 4); }

    std::optional<Item> nextOf(Lane& lane) {
        if (total_ >= lane.maximum) return std::nullopt;
        // Few hosts can have all they may: the others come after a step or two.
        for (std::size_t left = lane.turns.size(); left > 0; --left) {
            std::string host = std::move(lane.turns.front());
            lane.turns.pop_front();
            const auto count = underWay_.find(host);
            if (count != underWay_.end() && count->second >= lane.maximumPerHost) {
                lane.turns.push_back(std::move(host));
                continue;
            }
            return take(lane, std::move(host));
        }
        return std::nullopt;
    }

    Item take(Lane& lane, std::string host) {
        const auto waiting = lane.waiting.find(host);
        Item item = std::move(waiting->second.front());
        waiting->second.pop_front();
        ++total_;
        ++underWay_[host];
        if (waiting->second.empty()) {
            lane.waiting.erase(waiting);
        } else {
            lane.turns.push_back(std::move(host));
        }
        return item;
    }

    std::array<Lane, 2> lanes_;
    std::unordered_map<std::string, std::size_t> underWay_;
    std::size_t total_ = 0;
};

}  // namespace tavrin
