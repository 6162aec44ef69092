// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "tavrin/dsl/context.h"
#include "tavrin/dsl/node_dictionary.h"
#include "tavrin/dsl/origin_recorder.h"
#include "tavrin/platform/foundation/net/url.h"

namespace tavrin {

/// The part of a `Context` that is the library's own, not the host's.
struct RenderState {
    static RenderState& of(Context& context) { return *context.state_; }

    /// The web images that renders with this context have met, for the next call's prefetch. Never cleared.
    std::vector<URL> webImageURLs;
    /// The nodes of the last document.
    std::shared_ptr<const NodeDictionary> rootNodes = std::make_shared<const NodeDictionary>();
    /// The model of the current call; stays after a failed one.
    std::shared_ptr<const ModelContext> modelContext;
    std::optional<URL> widgetURL;
    /// Only while a render of a context that asks for origins goes on.
    std::unique_ptr<OriginRecorder> recorder;
    std::shared_ptr<const ViewOrigins> origins;

    std::size_t nodesDrawn = 0;
    std::size_t modifiersApplied = 0;
    std::size_t nesting = 0;
    /// The references that are being drawn, outermost first.
    std::vector<std::string_view> openReferences;

    /// The moment at which the outermost node began to be drawn; while none is, the moment of the call.
    [[nodiscard]] Date now(const Context& context) const;
    /// The device's time zone: the context's, else that of the process, which is looked up once for each render.
    const TimeZone& deviceTimeZone(const Context& context);
    /// Records an image's address for the next call's prefetch; what is no address is left out.
    void cacheImage(std::string_view url);
    /// Begins to draw an outermost node: counts from zero again.
    void beginRender(const Context& context);
    /// Counts a modifier that is applied. Throws `TavrinError` of kind "Engine" beyond the context's bound.
    void countModifier(const Context& context) {
        if (modifiersApplied++ / modifiersPerNode >= context.maximumNodes) failModifiers(context);
    }

    /// Notes the origins of the views that are made in its life, if the context asks for that.
    class Recording {
    public:
        Recording(RenderState& state, const Context& context) : state_(state) {
            state.origins = nullptr;
            if (context.recordsOrigins) state.recorder = std::make_unique<OriginRecorder>();
        }
        Recording(const Recording&) = delete;
        Recording& operator=(const Recording&) = delete;
        ~Recording() { state_.recorder = nullptr; }

        /// Keeps what was noted for a tree.
        void keep(const AnyView& root) const {
            if (state_.recorder)
                state_.origins = std::make_shared<const ViewOrigins>(state_.recorder->origins(root, *state_.rootNodes));
        }

    private:
        RenderState& state_;
    };

    /// Counts a node while it is drawn. Throws `TavrinError` of kind "Engine" beyond the context's bounds.
    class NodeScope {
    public:
        NodeScope(RenderState& state, const Context& context) : state_(state) {
            if (state.nesting == 0) state.beginRender(context);
            if (state.nodesDrawn >= context.maximumNodes || state.nesting >= context.maximumNesting) fail(context);
            ++state.nodesDrawn;
            ++state.nesting;
        }
        NodeScope(const NodeScope&) = delete;
        NodeScope& operator=(const NodeScope&) = delete;
        ~NodeScope() { --state_.nesting; }

    private:
        [[noreturn]] void fail(const Context& context) const;

        RenderState& state_;
    };

    /// Marks a reference as being drawn. Throws `TavrinError` of kind "RefNode" when it already is.
    class ReferenceScope {
    public:
        ReferenceScope(RenderState& state, std::string_view name);
        ReferenceScope(const ReferenceScope&) = delete;
        ReferenceScope& operator=(const ReferenceScope&) = delete;
        ~ReferenceScope() { state_.openReferences.pop_back(); }

    private:
        RenderState& state_;
    };

private:
    /// A node has a few modifiers, not thousands: references multiply them as they multiply nodes.
    static constexpr std::size_t modifiersPerNode = 8;

    [[noreturn]] static void failModifiers(const Context& context);

    Date now_;  // while a node is drawn
    std::optional<TimeZone> processTimeZone_;
};

}  // namespace tavrin
