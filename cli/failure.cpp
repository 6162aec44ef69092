// SPDX-License-Identifier: MIT
#include "cli/failure.h"

#include <new>
#include <string_view>

#include "cli/io_error.h"
#include "cli/usage_error.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/model_context.h"

namespace tavrin::cli {

Failure describe(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const UsageError& e) {
        return {"UsageError", e.what()};
    } catch (const IOError& e) {
        Failure failure{"IOError", e.what()};
        failure.file = e.file;
        return failure;
    } catch (const DecodingError& e) {
        return {"DecodingError", e.message, std::string(name(e.kind))};
    } catch (const ConversionError& e) {
        return {"ConversionError", e.message};
    } catch (const TavrinError& e) {
        return {"TavrinError", e.message, e.kind};
    } catch (const ModelContextError& e) {
        return {"ModelContextError", e.message, e.kind};
    } catch (const std::bad_alloc&) {
        return {"TavrinError", "there is not enough memory", "Program"};
    } catch (const std::exception& e) {
        return {"TavrinError", e.what(), "Program"};
    } catch (...) {
        return {"TavrinError", "an unknown error", "Program"};
    }
}

namespace {

Failure::Place shown(const TextPlace& place, const Source& source) {
    return {source.firstLine - 1 + place.line, place.column, excerptAt(source.text, place.offset)};
}

/// Adds what is known about where it went wrong.
void addPlace(Failure& failure, const PlacedError& error, const Source& document, const Source* model) {
    const Source& source = error.role == TextRole::model && model ? *model : document;
    failure.file = source.name;
    if (!error.isRooted) return;
    failure.codingPath = error.codingPath;
    const auto* decoding = dynamic_cast<const DecodingError*>(&error);
    if (decoding) failure.key = decoding->key;
    const auto offset = decoding && decoding->offset ? decoding->offset : locate(source.text, error.codingPath);
    if (offset) failure.place = shown(placeAt(source.text, *offset), source);
}

}  // namespace

Failure describe(const std::exception_ptr& error, const Source& document, const Source* model) {
    Failure failure = describe(error);
    try {
        std::rethrow_exception(error);
    } catch (const PlacedError& e) {
        addPlace(failure, e, document, model);
    } catch (const IOError&) {  // names its own file
    } catch (...) {
        failure.file = document.name;
    }
    return failure;
}

Failure describe(const Diagnostic& diagnostic, const Source& source) {
    Failure failure{"Diagnostic", diagnostic.message, std::string(diagnostic.code)};
    failure.codingPath = diagnostic.path;
    failure.file = source.name;
    if (diagnostic.range) failure.place = shown(diagnostic.range->begin, source);
    return failure;
}

}  // namespace tavrin::cli
