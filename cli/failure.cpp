// SPDX-License-Identifier: MIT
#include "cli/failure.h"

#include <string_view>

#include "cli/io_error.h"
#include "cli/project/widget_settings.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_error.h"

namespace tavrin::cli {

Failure describe(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const UsageError& e) {
        return {{"UsageError", e.what()}};
    } catch (const OptionError& e) {
        return {{"UsageError", e.what()}};
    } catch (const IOError& e) {
        return {{"IOError", e.what()}, e.file};
    } catch (const SettingsError& e) {
        Failure failure{{"SettingsError", e.what()}, e.source.name, excerptAt(e.source.text, e.place.offset)};
        failure.place = e.place;
        return failure;
    } catch (...) {
        return {describeError(error)};
    }
}

namespace {

/// Adds the line at the place, which is told as one of the whole input.
void addExcerpt(Failure& failure, const Source& source) {
    if (!failure.place) return;
    failure.excerpt = excerptAt(source.text, failure.place->offset);
    failure.place->line += source.firstLine - 1;
}

}  // namespace

Failure describe(const std::exception_ptr& error, const Source& document, const Source* model) {
    Failure failure = describe(error);
    for (const char* const aboutOthers : {"IOError", "UsageError", "SettingsError"})
        if (failure.type == aboutOthers) return failure;
    static_cast<ErrorDescription&>(failure) =
        describeError(error, document.text, model ? std::optional<std::string_view>(model->text) : std::nullopt);
    const Source& source = failure.role == TextRole::model && model ? *model : document;
    failure.file = source.name;
    addExcerpt(failure, source);
    return failure;
}

Failure describe(const Diagnostic& diagnostic, const Source& source) {
    Failure failure{{"Diagnostic", diagnostic.message, std::string(diagnostic.code), diagnostic.path}, source.name};
    if (diagnostic.range) failure.place = diagnostic.range->begin;
    addExcerpt(failure, source);
    return failure;
}

}  // namespace tavrin::cli
