// SPDX-License-Identifier: MIT
#include "tavrin/engine/tavrin_engine.h"

#include <memory>
#include <string>
#include <utility>

#include "tavrin/dsl/dsl_root.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/engine/json_decoder.h"
#include "tavrin/images/web_image_cache.h"

namespace tavrin {
namespace {

std::shared_ptr<const ModelContext> decodeModel(std::string_view text) {
    try {
        return std::allocate_shared<const ModelContext>(pool::Allocator<ModelContext>(),
                                                        JSONDecoder().decode<JSON>(text), ModelContext::Environment());
    } catch (PlacedError& error) {
        error.role = TextRole::model;
        throw;
    }
}

void checkVersion(DSLVersion version) {
    if (TavrinEngine::supporedVersion < version)
        throw TavrinError("Engine", "this engine only support " + std::string(name(TavrinEngine::supporedVersion)) +
                                        ", but got DSL for " + std::string(name(version)));
}

}  // namespace

AnyView TavrinEngine::loadView(std::string_view json, std::optional<std::string_view> model, Context& context) const {
    DSLRoot root = JSONDecoder({.depth = JSONText::greatestDepth}).decode<DSLRoot>(json);
    RenderState& state = RenderState::of(context);
    state.rootNodes =
        std::allocate_shared<const NodeDictionary>(pool::Allocator<NodeDictionary>(), std::move(root.nodes));
    if (model) state.modelContext = decodeModel(*model);
    checkVersion(root.version);
    WebImageCache::shared().cacheImages(state.webImageURLs, nullptr, context.fetchPolicy);
    const auto main = state.rootNodes->find("main");
    if (main == state.rootNodes->end()) throw TavrinError("Engine", "view must have main node");
    const RenderState::Recording recording(state, context);
    AnyView view = renderEntry(*main, context);
    recording.keep(view);
    state.modelContext = nullptr;
    return view;
}

}  // namespace tavrin
