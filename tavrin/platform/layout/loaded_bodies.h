// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin::layout {

/// The bodies of the views in one tree that wait for something outside. All are waited for at once, each key once, so
/// that a tree takes as long as the slowest of them; the bodies themselves are made one by one, by who asks for them.
/// That thread also pays for the load, whichever thread did it, when it first asks.
class LoadedBodies {
public:
    /// At most so many views are waited for at once; the next ones begin as others end.
    static constexpr std::size_t maximumThreads = 32;
    /// More keys than this to wait for are an error: each may take seconds.
    static constexpr std::size_t maximumLoads = 512;

    /// Waits for the views in a tree. Starts no thread where no view, or only one, has to wait: that one waits when it
    /// is asked for. Throws `TavrinError` of kind "Engine" where too many have to.
    static LoadedBodies under(const AnyView& root);

    LoadedBodies() = default;
    LoadedBodies(LoadedBodies&&) = default;
    LoadedBodies& operator=(LoadedBodies&&) = default;
    LoadedBodies(const LoadedBodies&) = delete;
    LoadedBodies& operator=(const LoadedBodies&) = delete;
    ~LoadedBodies();

    /// The body of a composed view. Passes on what loading or making it throws.
    [[nodiscard]] AnyView body(const ViewBox& view, const EnvironmentValues& environment);

    /// To be called before the same tree is laid out once more: what is known by its key is not waited for again, and
    /// its body stays the first that was made, so that nothing is reported twice.
    void repeat() { isRepeated_ = true; }

private:
    struct Loaded {
        Loading::Body makeBody;
        Cost cost = {};  ///< what loading has cost elsewhere, until it is counted for who asks first
        std::optional<AnyView> first = std::nullopt;
    };

    std::unordered_map<std::string, Loaded> bodies_;
    bool isRepeated_ = false;
};

}  // namespace tavrin::layout
