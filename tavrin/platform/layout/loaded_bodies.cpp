// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/loaded_bodies.h"

#include <atomic>
#include <cstddef>
#include <exception>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/metering_elsewhere.h"
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

}  // namespace

LoadedBodies LoadedBodies::under(const AnyView& root) {
    LoadedBodies loaded;
    if (!root.box().loads) return loaded;
    std::vector<Loading> loads = findLoads(root);
    if (loads.size() < 2) return loaded;
    const MeteringElsewhere elsewhere;
    std::atomic<bool> isShort = false;
    std::vector<std::optional<Loaded>> ended(loads.size());
    parallelLoop(loads.size(), maximumThreads, [&](std::size_t index) {
        if (isShort) return;  // there is not enough for all: no other begins
        Loaded load;
        const std::optional<Cost> cost = elsewhere.of([&] {
            load.makeBody = bodyOf(loads[index]);
            const Metering* const metering = Metering::ofThisThread();
            if (metering && metering->isShort()) load.makeBody = nullptr;
        });
        if (cost) {
            load.cost = *cost;
            ended[index] = std::move(load);
        } else {
            isShort = true;
        }
    });
    checkBudget();
    std::size_t kept = 0;
    for (; kept < loads.size() && ended[kept]; ++kept)
        loaded.bodies_.emplace(std::move(loads[kept].key), *std::move(ended[kept]));
    // Those after the first that fell short make room for it: from there on each is loaded when it is asked for.
    (void)elsewhere.of([&] { ended.clear(); });
    return loaded;
}

LoadedBodies::~LoadedBodies() {
    // What nobody has asked for is given back here, where it was never counted.
    for (const auto& [key, load] : bodies_) Meter::ofThisThread().bytes += load.cost.bytes;
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
