// SPDX-License-Identifier: MIT
#include "tavrin/doors/error_description.h"

#include <new>
#include <utility>

#include "tavrin/diagnostics/write_diagnostic.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/model_context.h"

namespace tavrin {

ErrorDescription describeError(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
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

ErrorDescription describeError(const std::exception_ptr& error, std::string_view document,
                               std::optional<std::string_view> model) {
    ErrorDescription description = describeError(error);
    try {
        std::rethrow_exception(error);
    } catch (const PlacedError& e) {
        description.role = e.role;
        if (!e.isRooted) return description;
        description.codingPath = e.codingPath;
        const std::string_view text = e.role == TextRole::model ? model.value_or("") : document;
        const auto* const decoding = dynamic_cast<const DecodingError*>(&e);
        if (decoding) description.key = decoding->key;
        const auto offset = decoding && decoding->offset ? decoding->offset : locate(text, e.codingPath);
        if (offset) description.place = placeAt(text, *offset);
    } catch (...) {  // is about no text
    }
    return description;
}

void writeMembers(const ErrorDescription& error, std::string_view pathKey, JSONWriter& writer) {
    writer.key("type").value(error.type);
    if (!error.kind.empty()) writer.key("kind").value(error.kind);
    if (error.type == "ConversionError")
        writer.key("domain").value(ConversionError::domain).key("code").value(ConversionError::code);
    if (error.codingPath) write(*error.codingPath, writer.key(pathKey));
    if (error.key) writer.key("key").value(*error.key);
    writer.key("message").value(error.message);
}

void writeMembers(const ErrorDescription& error, JSONWriter& writer) {
    writeMembers(error, "path", writer);
    if (error.codingPath && error.role) writer.key("role").value(name(*error.role));
    if (error.place) writer.key("line").value(error.place->line).key("column").value(error.place->column);
}

std::string toJSON(const ErrorDescription& error) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject();
    writeMembers(error, writer);
    writer.endObject();
    return std::move(writer).text();
}

}  // namespace tavrin
