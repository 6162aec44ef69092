// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/loaded_bodies.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/foundation/threads/parallel_loop.h"

namespace tavrin::layout {
namespace {

/// The loads, one for each key, that are not ready; in document order.
std::vector<Loading> findLoads(const AnyView& root) {
    std::vector<Loading> loads;
    std::unordered_set<std::string> keys;
    std::unordered_set<const ViewBox*> seen;  // a view that stands in many places is looked at once
    std::vector<const AnyView*> pending{&root};
    std::vector<const AnyView*> inside;
    while (!pending.empty()) {
        const ViewBox& box = pending.back()->box();
        pending.pop_back();
        if (!box.loads || !seen.insert(&box).second) continue;
        std::optional<Loading> loading = box.loading();
        if (loading && !loading->isReady && keys.insert(loading->key).second) loads.push_back(*std::move(loading));
        if (loads.size() > LoadedBodies::maximumLoads)
            throw TavrinError(
                "Engine", "more than " + std::to_string(LoadedBodies::maximumLoads) + " pictures have to be loaded");
        inside.clear();
        box.forEachInside([&](const AnyView& view) { inside.push_back(&view); });
        pending.insert(pending.end(), inside.rbegin(), inside.rend());
    }
    return loads;
}

/// What a load comes to; an error is thrown again where the body is made.
Loading::Body bodyOf(const Loading& loading) {
    try {
        checkBudget();
        return loading.load();
    } catch (...) {
        return
            [error = std::current_exception()](const EnvironmentValues&) -> AnyView { std::rethrow_exception(error); };
    }
}

/// Lets other threads go on from what this one has spent, and knows what they hold in all. Once that is too much, no
/// other load begins: it is up to who asks for its body, if it comes to that.
class CostElsewhere {
public:
    CostElsewhere() {
        const Metering* const metering = Metering::ofThisThread();
        if (!metering) return;
        budget_ = metering->budget();
        spent_ = metering->spent();
        bytes_ = spent_.bytes;
    }

    [[nodiscard]] bool isTooMuch() const { return budget_ && bytes_ > 0 && std::uint64_t(bytes_) > budget_->bytes; }

    template <class Work>
    Cost of(const Work& work) {
        Cost cost = spent_;
        {
            std::optional<Metering> metering;
            if (budget_) metering.emplace(*budget_, cost);
            work();
        }
        bytes_ += cost.bytes - spent_.bytes;
        return {cost.steps - spent_.steps, cost.pixels - spent_.pixels, cost.bytes - spent_.bytes};
    }

private:
    std::optional<RenderBudget> budget_;
    Cost spent_;
    std::atomic<std::int64_t> bytes_ = 0;
};

}  // namespace

LoadedBodies LoadedBodies::under(const AnyView& root) {
    LoadedBodies loaded;
    if (!root.box().loads) return loaded;
    std::vector<Loading> loads = findLoads(root);
    if (loads.size() < 2) return loaded;
    CostElsewhere elsewhere;
    std::vector<std::optional<Loaded>> ended(loads.size());
    parallelLoop(loads.size(), maximumThreads, [&](std::size_t index) {
        if (elsewhere.isTooMuch()) return;
        Loaded& load = ended[index].emplace();
        load.cost = elsewhere.of([&] { load.makeBody = bodyOf(loads[index]); });
    });
    checkBudget();
    for (std::size_t i = 0; i < loads.size(); ++i)
        if (ended[i]) loaded.bodies_.emplace(std::move(loads[i].key), *std::move(ended[i]));
    return loaded;
}

AnyView LoadedBodies::body(const ViewBox& view, const EnvironmentValues& environment) {
    if (!view.loads) return view.body(environment);
    const std::optional<Loading> loading = view.loading();
    if (!loading) return view.body(environment);
    auto found = bodies_.find(loading->key);
    if (found == bodies_.end()) found = bodies_.emplace(loading->key, Loaded{loading->load()}).first;
    auto& [makeBody, cost, first] = found->second;
    Metering::charge(std::exchange(cost, {}));
    if (isRepeated_ && first) return *first;
    AnyView body = makeBody(environment);
    if (!first) first = body;
    return body;
}

}  // namespace tavrin::layout
