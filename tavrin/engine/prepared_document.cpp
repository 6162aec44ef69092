// SPDX-License-Identifier: MIT
#include "tavrin/engine/prepared_document.h"

#include <string>

#include "tavrin/dsl/dsl_root.h"
#include "tavrin/dsl/render_state.h"
#include "tavrin/engine/json_decoder.h"
#include "tavrin/engine/tavrin_engine.h"
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

PreparedDocument::PreparedDocument(std::string_view json)
    : root_(std::allocate_shared<const DSLRoot>(
          pool::Allocator<DSLRoot>(), JSONDecoder({.depth = JSONText::greatestDepth}).decode<DSLRoot>(json))) {}

AnyView PreparedDocument::bind(std::optional<std::string_view> model, Context& context) const {
    RenderState& state = RenderState::of(context);
    state.rootNodes = {root_, &root_->nodes};
    if (model) state.modelContext = decodeModel(*model);
    checkVersion(root_->version);
    WebImageCache::shared().cacheImages(state.webImageURLs, nullptr, context.fetchPolicy);
    const auto main = root_->nodes.find("main");
    if (main == root_->nodes.end()) throw TavrinError("Engine", "view must have main node");
    const RenderState::Recording recording(state, context);
    AnyView view = renderEntry(*main, context);
    recording.keep(view);
    state.modelContext = nullptr;
    return view;
}

void PreparedDocument::place(TavrinError& error) const {
    if (error.isRooted) return;
    std::optional<CodingPath> path = pathOf(error.origin, root_->nodes);
    if (!path) return;
    error.codingPath = *std::move(path);
    error.isRooted = true;
}

}  // namespace tavrin
