#include "cli/failure.h"

#include <array>
#include <new>
#include <string_view>
#include <utility>

#include "cli/io_error.h"
#include "cli/usage_error.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_place.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/model_context.h"

namespace tavrin::cli {
namespace {

constexpr std::array<std::string_view, 4> decodingKinds{"keyNotFound", "typeMismatch", "valueNotFound",
                                                        "dataCorrupted"};

Failure::Place placeIn(std::string_view text, std::size_t offset) {
    const TextPlace place = placeAt(text, offset);
    return {place.line, place.column, excerptAt(text, offset)};
}

Failure describeUnplaced(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const UsageError& e) {
        return {"UsageError", e.what()};
    } catch (const IOError& e) {
        return {"IOError", e.what()};
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

/// The parts that all errors of decoding share.
Failure describePlaced(std::string type, const PlacedError& error, const std::optional<std::size_t>& offset,
                       const Source& document, const Source* model) {
    Failure failure{std::move(type), error.message};
    failure.codingPath = error.codingPath;
    const Source& source = error.role == TextRole::model && model ? *model : document;
    failure.file = source.name;
    const auto found = offset ? offset : locate(source.text, error.codingPath);
    if (found) failure.place = placeIn(source.text, *found);
    return failure;
}

}  // namespace

Failure describe(const std::exception_ptr& error) { return describeUnplaced(error); }

Failure describe(const std::exception_ptr& error, const Source& document, const Source* model) {
    try {
        std::rethrow_exception(error);
    } catch (const DecodingError& e) {
        Failure failure = describePlaced("DecodingError", e, e.offset, document, model);
        failure.kind = decodingKinds[static_cast<std::size_t>(e.kind)];
        failure.key = e.key;
        return failure;
    } catch (const ConversionError& e) {
        return describePlaced("ConversionError", e, std::nullopt, document, model);
    } catch (const IOError&) {
        return describeUnplaced(error);
    } catch (...) {
        Failure failure = describeUnplaced(error);
        failure.file = document.name;
        return failure;
    }
}

}  // namespace tavrin::cli
