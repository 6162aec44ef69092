// SPDX-License-Identifier: MIT
#include "cli/production.h"

#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

#include "cli/ordered_work.h"

namespace tavrin::cli {
namespace {

Outcome produce(const DocumentArguments& arguments, const Source* model, const std::string& path,
                const std::function<void(const Production&)>& make) {
    Outcome outcome;
    Source source{displayName(path)};
    try {
        source.text = readInput(path, arguments.widget.budget);
        const WidgetOptions options = noting(arguments.widget, outcome.notes);
        const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
        const BoundDocument document = Document(source.text, options.budget).bind(modelText, options);
        make({source, document, options, outcome});
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

void produceAll(const DocumentArguments& arguments, const std::function<void(const Production&)>& make,
                const std::function<void(const std::string& document, Outcome)>& take) {
    std::optional<Source> model;
    if (arguments.model)
        model = Source{displayName(*arguments.model), readInput(*arguments.model, arguments.widget.budget)};
    const std::vector<std::string>& documents = arguments.documents;
    inOrder<Outcome>(
        documents.size(),
        [&](std::size_t index) { return produce(arguments, model ? &*model : nullptr, documents[index], make); },
        [&](std::size_t index, Outcome outcome) { take(documents[index], std::move(outcome)); });
}

}  // namespace tavrin::cli
