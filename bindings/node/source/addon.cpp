// SPDX-License-Identifier: MIT
// What the module in lib/ is made on. Its functions take what lib/ has checked, and trust it.
#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <napi.h>

#include "bindings/node/source/failure.h"
#include "bindings/node/source/handles.h"
#include "bindings/node/source/options.h"
#include "bindings/node/source/task.h"
#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/doors/media_type.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/doors/option.h"
#include "tavrin/schema/document_schema.h"

namespace tavrin::addon {
namespace {

using Arguments = Napi::CallbackInfo;

// About what is kept in memory, for the garbage collector: a document's nodes for each byte of its text, the views that
// come of it.
constexpr std::size_t bytesForByteOfText = 8;
constexpr std::size_t bytesOfWidget = 32 << 10;

/// A JSON text, given as such or as its bytes.
std::string textOf(const Napi::Value& value) {
    if (value.IsString()) return value.As<Napi::String>().Utf8Value();
    const auto bytes = value.As<Napi::Uint8Array>();
    return {reinterpret_cast<const char*>(bytes.Data()), bytes.ByteLength()};
}

std::optional<std::string> optionalText(const Napi::Value& value) {
    return value.IsUndefined() ? std::nullopt : std::optional(textOf(value));
}

std::optional<CancelToken> tokenOf(const Napi::Value& value) {
    return value.IsUndefined() ? std::nullopt : std::optional(held<CancelToken>(value));
}

Napi::Value toText(Napi::Env env, const std::string& text) { return Napi::String::New(env, text); }

/// A buffer of bytes that are not copied.
template <class Bytes>
Napi::Value toBuffer(Napi::Env env, Bytes bytes) {
    using Byte = typename Bytes::value_type;
    auto held = std::make_unique<Bytes>(std::move(bytes));
    Bytes* const kept = held.release();
    return Napi::Buffer<Byte>::NewOrCopy(
        env, kept->data(), kept->size(), [](Napi::Env, Byte*, Bytes* dead) { delete dead; }, kept);
}

/// A function for scripts; what it throws becomes what scripts catch.
template <Napi::Value (*function)(const Arguments&)>
Napi::Value exported(const Arguments& arguments) {
    const Napi::Env env = arguments.Env();
    try {
        return function(arguments);
    } catch (const Napi::Error&) {
        throw;
    } catch (...) {
        napi_throw(env, toValue(env, failureOf(std::current_exception())));
        return env.Undefined();
    }
}

Napi::Value holdDocument(Napi::Env env, OpenDocument document) {
    const std::size_t bytes = document.text().size() * (1 + bytesForByteOfText);
    return hold(env, std::move(document), bytes);
}

// (text, options)
Napi::Value decode(const Arguments& arguments) {
    return holdDocument(arguments.Env(),
                        OpenDocument(textOf(arguments[0]), readBudget(arguments[1].As<Napi::Object>())));
}

// (text, options, token): the same, later
Napi::Value decodeLater(const Arguments& arguments) {
    RenderBudget budget = readBudget(arguments[1].As<Napi::Object>());
    budget.cancel = tokenOf(arguments[2]);
    return startTask(
        arguments.Env(), [text = textOf(arguments[0]), budget] { return OpenDocument(text, budget); }, holdDocument);
}

/// A widget with what is told of it at once.
struct NewWidget {
    HeldWidget held;
    std::optional<Date> validUntil;
    std::optional<Failure> failure;  // of working that out
    std::size_t bytes = 0;
};

NewWidget makeWidget(const OpenDocument& document, std::optional<std::string> model, DrawingOptions options,
                     bool listens) {
    takeApart();
    const std::size_t bytes = bytesOfWidget + bytesForByteOfText * (model ? model->size() : 0);
    auto lacksPictures = std::make_shared<std::atomic<bool>>(false);
    if (listens)
        options.widget.notes = [lacksPictures](const WidgetNote& note) {
            if (!note.code.empty()) lacksPictures->store(true, std::memory_order_relaxed);
        };
    NewWidget made{
        {document.widget(std::move(model), std::move(options)), std::move(lacksPictures), asideOfThisThread()},
        {},
        {},
        bytes};
    try {
        made.validUntil = made.held.widget.validUntil();
    } catch (...) {  // one that cannot be laid out still has a tree
        made.failure = failureOf(std::current_exception());
    }
    return made;
}

// {widget, date, mediaType, validUntil or failure}, moments in seconds
Napi::Value tellWidget(Napi::Env env, NewWidget made) {
    Napi::Object told = Napi::Object::New(env);
    const DrawingOptions& options = made.held.widget.options();
    told.Set("date", options.widget.date->secondsSince1970);
    told.Set("mediaType", std::string(mediaTypes[options.format]));
    if (made.validUntil) told.Set("validUntil", made.validUntil->secondsSince1970);
    if (made.failure) told.Set("failure", toValue(env, *made.failure));
    told.Set("widget", hold(env, std::move(made.held), made.bytes));
    return told;
}

// (document, model, options, token, whether to listen for pictures that cannot be had)
Napi::Value bind(const Arguments& arguments) {
    DrawingOptions options = readOptions(arguments[2].As<Napi::Object>());
    options.widget.budget.cancel = tokenOf(arguments[3]);
    return startTask(
        arguments.Env(),
        [document = held<OpenDocument>(arguments[0]), model = optionalText(arguments[1]), options = std::move(options),
         listens = arguments[4].ToBoolean().Value()] { return makeWidget(document, model, options, listens); },
        tellWidget);
}

/// The widget that a call is about, to be cancelled by the call's token.
OpenWidget widgetOf(const Napi::Value& widget, const Napi::Value& token) {
    return held<HeldWidget>(widget).widget.with(tokenOf(token));
}

// (widget, format, options, token)
Napi::Value encode(const Arguments& arguments) {
    return startTask(
        arguments.Env(),
        [widget = widgetOf(arguments[0], arguments[3]),
         picture = readPictureOptions(arguments[1], arguments[2].As<Napi::Object>())] {
            return widget.encode(picture);
        },
        toBuffer<std::string>);
}

struct Pixels {
    std::size_t width;
    std::size_t height;
    std::vector<std::uint8_t> rgba;
};

// {width, height, data}
Napi::Value tellPixels(Napi::Env env, Pixels pixels) {
    Napi::Object told = Napi::Object::New(env);
    told.Set("width", static_cast<double>(pixels.width));
    told.Set("height", static_cast<double>(pixels.height));
    told.Set("data", toBuffer(env, std::move(pixels.rgba)));
    return told;
}

// (widget, token)
Napi::Value pixels(const Arguments& arguments) {
    return startTask(
        arguments.Env(),
        [widget = widgetOf(arguments[0], arguments[1])] {
            const auto drawn = widget.pixels();
            return Pixels{static_cast<std::size_t>(drawn->width()), static_cast<std::size_t>(drawn->height()),
                          drawn->straightRGBA()};
        },
        tellPixels);
}

// (widget, token): one of a widget's texts
template <std::string (OpenWidget::*text)() const>
Napi::Value answer(const Arguments& arguments) {
    return startTask(
        arguments.Env(), [widget = widgetOf(arguments[0], arguments[1])] { return (widget.*text)(); }, toText);
}

// (widget, path, token)
Napi::Value explain(const Arguments& arguments) {
    return startTask(
        arguments.Env(),
        [widget = widgetOf(arguments[0], arguments[2]), path = optionalText(arguments[1])] {
            return widget.explanation(path);
        },
        toText);
}

// (text, model, families, options, token)
Napi::Value check(const Arguments& arguments) {
    std::vector<std::string> families;
    const auto names = arguments[2].As<Napi::Array>();
    for (std::uint32_t i = 0; i < names.Length(); ++i) families.push_back(names.Get(i).ToString().Utf8Value());
    DrawingOptions options = readOptions(arguments[3].As<Napi::Object>());
    options.widget.budget.cancel = tokenOf(arguments[4]);
    return startTask(
        arguments.Env(),
        [text = textOf(arguments[0]), model = optionalText(arguments[1]), families = std::move(families),
         options = std::move(options)] { return toJSON(checkDocument(text, model, options, families)); },
        toText);
}

// (widget)
Napi::Value lacksPictures(const Arguments& arguments) {
    return Napi::Boolean::New(arguments.Env(), held<HeldWidget>(arguments[0]).lacksPictures->load());
}

Napi::Value cancelToken(const Arguments& arguments) { return hold(arguments.Env(), CancelToken(), 0); }

// (token)
Napi::Value cancel(const Arguments& arguments) {
    held<CancelToken>(arguments[0]).cancel();
    return arguments.Env().Undefined();
}

Napi::Value schema(const Arguments& arguments) { return toText(arguments.Env(), documentSchema()); }

Napi::Value options(const Arguments& arguments) { return toText(arguments.Env(), sharedOptionsJSON()); }

template <Napi::Value (*function)(const Arguments&)>
void give(Napi::Object& exports, const char* name) {
    exports.Set(name, Napi::Function::New<exported<function>>(exports.Env(), name));
}

Napi::Object start(Napi::Env env, Napi::Object exports) {
    exports.Set("version", Napi::String::New(env, TAVRIN_VERSION));
    give<schema>(exports, "schema");
    give<options>(exports, "options");
    give<decode>(exports, "decode");
    give<decodeLater>(exports, "decodeLater");
    give<bind>(exports, "bind");
    give<encode>(exports, "encode");
    give<pixels>(exports, "pixels");
    give<answer<&OpenWidget::treeText>>(exports, "tree");
    give<answer<&OpenWidget::layoutText>>(exports, "layout");
    give<answer<&OpenWidget::targetsText>>(exports, "targets");
    give<explain>(exports, "explain");
    give<check>(exports, "check");
    give<lacksPictures>(exports, "lacksPictures");
    give<cancelToken>(exports, "cancelToken");
    give<cancel>(exports, "cancel");
    return exports;
}

NODE_API_MODULE(tavrin, start)

}  // namespace
}  // namespace tavrin::addon
