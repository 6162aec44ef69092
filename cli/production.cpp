// SPDX-License-Identifier: MIT
#include "cli/production.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>
#include <variant>

#include "cli/explained.h"
#include "cli/frame_files.h"
#include "cli/input.h"
#include "cli/missing_pictures.h"
#include "cli/note_logger.h"
#include "cli/ordered_work.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/images/web_image.h"
#include "tavrin/images/web_image_hasher.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json.h"
#include "tavrin/platform/ui/view_tree.h"

namespace tavrin::cli {
namespace {

std::string withLineEnd(std::string text) {
    if (!text.ends_with('\n')) text += '\n';
    return text;
}

RenderOptions renderOptionsFor(const Arguments& arguments, const Context& context, std::vector<std::string>& notes) {
    RenderOptions options = arguments.options;
    options.widgetURL = context.widgetURL();
    options.diagnostics = [&notes](std::string_view message) { notes.push_back("warning: " + std::string(message)); };
    return options;
}

/// Lays the view out and draws or prints it, as the verb asks.
std::string product(const Arguments& arguments, const Source& document, const AnyView& view, const Context& context,
                    std::vector<std::string>& notes) {
    if (arguments.verb == Verb::tree) return withLineEnd(viewTreeText(view));
    RenderOptions options = renderOptionsFor(arguments, context, notes);
    if (arguments.verb == Verb::explain) options.recording = layout::Recording::placements;
    ImageRenderer renderer(view, std::move(options));
    if (arguments.verb == Verb::render) {
        std::string picture = renderer.encode(arguments.destination.format);
        noteMissingPictures(renderer, arguments, notes);
        return picture;
    }
    if (arguments.verb == Verb::layout) return withLineEnd(renderer.layoutText());
    if (arguments.verb == Verb::explain) return explained(arguments, document, renderer, *context.origins());
    return withLineEnd(renderer.targetsText());
}

/// The pictures that a view tree names, in document order.
std::vector<NamedPicture> namedPictures(const AnyView& root) {
    std::vector<NamedPicture> pictures;
    std::vector<AnyView> pending{root};
    while (!pending.empty()) {
        const AnyView view = std::move(pending.back());
        pending.pop_back();
        if (const auto* image = view.as<WebImage>()) {
            if (image->url) pictures.push_back({*image->url, WebImageHasher(image->written)});
            if (image->alt) pictures.push_back({*image->alt, WebImageHasher(image->writtenAlt)});
        }
        const auto first = static_cast<std::ptrdiff_t>(pending.size());
        view.box().forEachInside([&](const AnyView& inside) { pending.push_back(inside); });
        std::reverse(pending.begin() + first, pending.end());
    }
    return pictures;
}

bool isExpression(const JSON* value) {
    const auto* text = value ? std::get_if<SharedText>(&value->object()) : nullptr;
    return text && text->view().find("{{") != std::string_view::npos;
}

/// How many addresses of pictures in a document stand in the model.
std::size_t addressesInModel(const JSON& value) {
    std::size_t count = 0;
    if (const auto* members = std::get_if<JSONObject>(&value.object())) {
        const JSON* const type = value.find("type");
        if (type && type->description() == "webImage")
            for (const char* key : {"url", "alt"}) count += std::size_t{isExpression(value.find(key))};
        for (const auto& [key, member] : members->members()) count += addressesInModel(member);
    } else if (const auto* elements = std::get_if<JSONArray>(&value.object())) {
        for (const JSON& element : *elements) count += addressesInModel(element);
    }
    return count;
}

/// What `fetch` cannot know without a model.
void noteAddressesInModel(const Source& document, std::vector<std::string>& notes) {
    std::size_t count = 0;
    try {
        count = addressesInModel(JSON::parse(document.text));
    } catch (const DecodingError&) {  // nested more deeply, where there are no nodes, than is looked at
    }
    if (count == 0) return;
    const std::string addresses = count == 1 ? "1 address stands" : std::to_string(count) + " addresses stand";
    notes.push_back("warning: " + addresses + " in the model; give it with --model FILE");
}

Outcome produce(const Arguments& arguments, const Source* model, const std::string& path) {
    Outcome outcome;
    Source document{displayName(path)};
    try {
        document.text = readInput(path);
        Context context(std::make_shared<NoteLogger>(outcome.notes));
        setUp(context, arguments);
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        const AnyView view = TavrinEngine().loadView(document.text, modelText, context);
        if (arguments.verb == Verb::fetch && !model) noteAddressesInModel(document, outcome.notes);
        if (arguments.verb == Verb::fetch)
            outcome.pictures = namedPictures(view);
        else if (arguments.frames)
            drawFrames(*arguments.frames, view, renderOptionsFor(arguments, context, outcome.notes), path, outcome);
        else
            outcome.bytes = product(arguments, document, view, context, outcome.notes);
    } catch (...) {
        outcome.failure = describe(std::current_exception(), document, model);
    }
    return outcome;
}

}  // namespace

void setUp(Context& context, const Arguments& arguments) {
    context.date = arguments.options.environment.date;
    context.timeZone = arguments.options.environment.timeZone;
    context.maxImageSize = arguments.maxImageSize;
    context.recordsOrigins = arguments.verb == Verb::explain;
    context.fetchPolicy = arguments.fetchPolicy;
    const bool looksThere = arguments.verb != Verb::fetch;  // which asks for the addresses themselves
    if (arguments.imageCacheDir && looksThere) context.imageCacheDir = URL::fileURL(*arguments.imageCacheDir);
}

void produceAll(const Arguments& arguments, const std::function<void(const std::string& document, Outcome)>& take) {
    std::optional<Source> model;
    if (arguments.model) model = Source{displayName(*arguments.model), readInput(*arguments.model)};
    const std::vector<std::string>& documents = arguments.documents;
    const std::size_t threads = std::min<std::size_t>(documents.size(), std::thread::hardware_concurrency());
    inOrder<Outcome>(
        documents.size(), threads,
        [&](std::size_t index) { return produce(arguments, model ? &*model : nullptr, documents[index]); },
        [&](std::size_t index, Outcome outcome) { take(documents[index], std::move(outcome)); });
}

}  // namespace tavrin::cli
