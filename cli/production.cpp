// SPDX-License-Identifier: MIT
#include "cli/production.h"

#include <cstddef>
#include <exception>
#include <filesystem>
#include <string_view>
#include <utility>

#include "cli/ordered_work.h"
#include "cli/read_models.h"

namespace tavrin::cli {
namespace {

Outcome produce(const DocumentInput& input, const ReadModels& models,
                const std::function<void(const Production&)>& make) {
    Outcome outcome;
    Source source{displayName(input.path)};
    const Source* model = nullptr;
    try {
        if (input.fault) std::rethrow_exception(input.fault);
        model = models.find(input.model);
        source.text = readInput(input.path, input.widget.budget);
        const WidgetOptions options = noting(input.widget, outcome.notes);
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        const BoundDocument document = Document(source.text, options.budget).bind(modelText, options);
        make({input, source, document, options, outcome});
    } catch (...) {
        outcome.failure = describe(std::current_exception(), source, model);
    }
    return outcome;
}

}  // namespace

WidgetOptions noting(WidgetOptions options, std::vector<std::string>& lines) {
    options.notes = [&lines](const WidgetNote& note) { lines.push_back(note.text()); };
    return options;
}

void noteMissingModel(const Source& document, std::vector<std::string>& notes) {
    if (document.text.find("\"{{") == std::string::npos) return;
    notes.emplace_back(
        "warning: there are expressions, but no model to look them up in; give it with --model FILE, or as " +
        (document.name == displayName("-") ? std::string("NAME")
                                           : std::filesystem::path(document.name).stem().string()) +
        ".model.json beside the document");
}

void produceAll(const DocumentArguments& arguments, const std::function<void(const Production&)>& make,
                const std::function<void(const DocumentInput& document, Outcome)>& take) {
    const std::vector<DocumentInput>& documents = arguments.documents;
    ReadModels models(arguments);
    for (const DocumentInput& document : documents) models.add(document.model);
    inOrder<Outcome>(
        documents.size(), [&](std::size_t index) { return produce(documents[index], models, make); },
        [&](std::size_t index, Outcome outcome) { take(documents[index], std::move(outcome)); });
}

}  // namespace tavrin::cli
