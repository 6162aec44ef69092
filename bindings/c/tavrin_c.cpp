// SPDX-License-Identifier: MIT
#include "bindings/c/tavrin/tavrin_c.h"

#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/c/handles.h"
#include "bindings/c/options.h"
#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/schema/document_schema.h"

namespace tavrin::c {
namespace {

/// The last error of the thread. Where even its text cannot be kept, there is one that needs no memory.
struct LastError {
    std::string text;
    const char* shown = "";
};

thread_local LastError lastError;

tavrin_status fail(tavrin_status status, std::string text) noexcept {
    lastError.text = std::move(text);
    lastError.shown = lastError.text.c_str();
    return status;
}

tavrin_status failWithoutMemory() noexcept {
    lastError.shown = R"({"type":"TavrinError","kind":"Program","message":"there is not enough memory"})";
    return TAVRIN_OUT_OF_MEMORY;
}

std::string errorOfCaller(std::string_view type, std::string_view message, std::string_view option = {}) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("type").value(type).key("message").value(message);
    if (!option.empty()) writer.key("option").value(option);
    writer.endObject();
    return std::move(writer).text();
}

tavrin_status statusOf(const ErrorDescription& error) {
    if (error.type == "DecodingError") return TAVRIN_DECODING_ERROR;
    if (error.type == "ConversionError") return TAVRIN_CONVERSION_ERROR;
    return error.type == "ModelContextError" ? TAVRIN_MODEL_CONTEXT_ERROR : TAVRIN_ERROR;
}

tavrin_status describeFailure() {
    try {
        throw;
    } catch (const CallError& error) {
        return fail(statusOf(error.description), toJSON(error.description));
    } catch (const OptionError& error) {
        return fail(TAVRIN_OPTION_ERROR, errorOfCaller("OptionError", error.what(), error.option));
    } catch (const Misuse& error) {
        return fail(TAVRIN_MISUSE, errorOfCaller("Misuse", error.what()));
    } catch (const std::bad_alloc&) {
        return failWithoutMemory();
    } catch (...) {
        const ErrorDescription error = describeError(std::current_exception());
        return fail(statusOf(error), toJSON(error));
    }
}

/// Does a call's work; nothing is thrown out of it.
template <class Work>
tavrin_status call(const Work& work) noexcept {
    try {
        work();
        return TAVRIN_OK;
    } catch (...) {
        try {
            return describeFailure();
        } catch (...) {
            return failWithoutMemory();
        }
    }
}

/// The place for a result, emptied. Throws `Misuse` for none.
template <class Result>
Result& resultAt(Result* place) {
    if (place == nullptr) throw Misuse("there is no place for the result");
    *place = {};
    return *place;
}

/// Makes bytes of what `work` gives.
template <class Work>
tavrin_status giveBytes(tavrin_bytes** place, const Work& work) noexcept {
    return call([&] {
        tavrin_bytes*& bytes = resultAt(place);
        bytes = made<tavrin_bytes>(std::string(work()));
    });
}

std::string_view textOf(const char* text, std::size_t size) {
    if (text == nullptr && size > 0) throw Misuse("a text is NULL, and yet has a size");
    return text == nullptr ? std::string_view() : std::string_view(text, size);
}

template <class Text>
std::optional<Text> optionalText(const char* text, std::size_t size) {
    const std::string_view view = textOf(text, size);
    return text == nullptr ? std::nullopt : std::optional(Text(view));
}

std::string bytesOf(const PixelBuffer& pixels) {
    const std::vector<std::uint8_t> rgba = pixels.straightRGBA();
    return {rgba.begin(), rgba.end()};
}

}  // namespace
}  // namespace tavrin::c

using namespace tavrin::c;

int tavrin_version(const char** text) {
    if (text != nullptr) *text = TAVRIN_VERSION;
    return TAVRIN_VERSION_NUMBER;
}

const char* tavrin_last_error(void) { return lastError.shown; }

tavrin_status tavrin_document_create(const char* text, size_t size, const tavrin_options* options,
                                     tavrin_document** document) {
    return call([&] {
        tavrin_document*& result = resultAt(document);
        const tavrin::RenderBudget budget = readOptions(options).widget.budget;
        result = made<tavrin_document>(tavrin::OpenDocument(std::string(textOf(text, size)), budget));
    });
}

void tavrin_document_free(tavrin_document* document) { unmake(document); }

tavrin_status tavrin_widget_create(const tavrin_document* document, const char* model, size_t model_size,
                                   const tavrin_options* options, tavrin_widget** widget) {
    return call([&] {
        tavrin_widget*& result = resultAt(widget);
        result = made<tavrin_widget>(
            valueOf(document).widget(optionalText<std::string>(model, model_size), readOptions(options)));
    });
}

void tavrin_widget_free(tavrin_widget* widget) { unmake(widget); }

tavrin_status tavrin_widget_encode(const tavrin_widget* widget, const tavrin_options* picture, tavrin_bytes** bytes) {
    return giveBytes(bytes, [&] { return valueOf(widget).encode(readPictureOptions(picture)); });
}

tavrin_status tavrin_widget_pixels(const tavrin_widget* widget, uint32_t* width, uint32_t* height,
                                   tavrin_bytes** bytes) {
    return giveBytes(bytes, [&] {
        std::uint32_t& columns = resultAt(width);
        std::uint32_t& rows = resultAt(height);
        const auto pixels = valueOf(widget).pixels();
        std::string rgba = bytesOf(*pixels);
        columns = static_cast<std::uint32_t>(pixels->width());
        rows = static_cast<std::uint32_t>(pixels->height());
        return rgba;
    });
}

tavrin_status tavrin_widget_tree(const tavrin_widget* widget, tavrin_bytes** json) {
    return giveBytes(json, [&] { return valueOf(widget).treeText(); });
}

tavrin_status tavrin_widget_layout(const tavrin_widget* widget, tavrin_bytes** json) {
    return giveBytes(json, [&] { return valueOf(widget).layoutText(); });
}

tavrin_status tavrin_widget_targets(const tavrin_widget* widget, tavrin_bytes** json) {
    return giveBytes(json, [&] { return valueOf(widget).targetsText(); });
}

tavrin_status tavrin_widget_explain(const tavrin_widget* widget, const char* path, tavrin_bytes** text) {
    return giveBytes(text, [&] {
        return valueOf(widget).explanation(path != nullptr ? std::optional<std::string>(path) : std::nullopt);
    });
}

tavrin_status tavrin_widget_valid_until(const tavrin_widget* widget, int* changes, double* seconds) {
    return call([&] {
        int& isKnown = resultAt(changes);
        double& moment = resultAt(seconds);
        const auto date = valueOf(widget).validUntil();
        isKnown = date ? 1 : 0;
        moment = date ? date->secondsSince1970 : 0;
    });
}

tavrin_status tavrin_check(const char* text, size_t size, const char* model, size_t model_size,
                           const char* const* families, size_t family_count, const tavrin_options* options,
                           tavrin_bytes** json) {
    return giveBytes(json, [&] {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < family_count; ++i) {
            if (families == nullptr || families[i] == nullptr) throw Misuse("a family's name is NULL");
            names.emplace_back(families[i]);
        }
        return tavrin::toJSON(tavrin::checkDocument(
            textOf(text, size), optionalText<std::string_view>(model, model_size), readOptions(options), names));
    });
}

tavrin_status tavrin_schema(tavrin_bytes** json) {
    return giveBytes(json, [] { return tavrin::documentSchema(); });
}

const void* tavrin_bytes_data(const tavrin_bytes* bytes) { return live::has(bytes) ? bytes->value.data() : nullptr; }

size_t tavrin_bytes_size(const tavrin_bytes* bytes) { return live::has(bytes) ? bytes->value.size() : 0; }

void tavrin_bytes_free(tavrin_bytes* bytes) { unmake(bytes); }

tavrin_status tavrin_cancel_token_create(tavrin_cancel_token** token) {
    return call([&] {
        tavrin_cancel_token*& result = resultAt(token);
        result = made<tavrin_cancel_token>(tavrin::CancelToken());
    });
}

void tavrin_cancel(const tavrin_cancel_token* token) {
    if (live::has(token)) token->value.cancel();
}

void tavrin_cancel_token_free(tavrin_cancel_token* token) { unmake(token); }
