#include "tavrin/platform/layout/loaded_bodies.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <optional>
#include <system_error>
#include <thread>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/blocked_signals.h"
#include "tavrin/platform/foundation/tavrin_error.h"

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
Loading::Body loaded(const Loading& loading) {
    try {
        return loading.load();
    } catch (...) {
        return
            [error = std::current_exception()](const EnvironmentValues&) -> AnyView { std::rethrow_exception(error); };
    }
}

/// Loads all, on other threads and on this one.
std::vector<Loading::Body> loadAll(const std::vector<Loading>& loads) {
    std::vector<Loading::Body> bodies(loads.size());
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t index = next++; index < loads.size(); index = next++) bodies[index] = loaded(loads[index]);
    };
    std::vector<std::jthread> threads;  // which wait for each other at the end, whatever happens
    try {
        const BlockedSignals blocked;  // signals are the host's
        const std::size_t count = std::min(loads.size(), LoadedBodies::maximumThreads) - 1;
        threads.reserve(count);
        while (threads.size() < count) threads.emplace_back(work);
    } catch (const std::system_error&) {
        // Those that did start, and this one, do the work.
    }
    work();
    threads.clear();
    return bodies;
}

}  // namespace

LoadedBodies LoadedBodies::under(const AnyView& root) {
    LoadedBodies loaded;
    if (!root.box().loads) return loaded;
    std::vector<Loading> loads = findLoads(root);
    if (loads.size() < 2) return loaded;
    std::vector<Loading::Body> bodies = loadAll(loads);
    for (std::size_t i = 0; i < loads.size(); ++i)
        loaded.bodies_.emplace(std::move(loads[i].key), std::move(bodies[i]));
    return loaded;
}

AnyView LoadedBodies::body(const ViewBox& view, const EnvironmentValues& environment) const {
    if (!bodies_.empty() && view.loads)
        if (const std::optional<Loading> loading = view.loading())
            if (const auto found = bodies_.find(loading->key); found != bodies_.end())
                return found->second(environment);
    return view.body(environment);
}

}  // namespace tavrin::layout
