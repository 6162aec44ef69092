// SPDX-License-Identifier: MIT
#include "cli/document_inputs.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "cli/io_error.h"
#include "cli/matrix/matrix_options.h"
#include "cli/project/widget_files.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_reader.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/option_words.h"

namespace tavrin::cli {
namespace {

DrawingOptions optionsOf(const Command& command) {
    OptionReader reader(Spelling::kebab, OptionReader::Types::texts, {.widget = {.fetchPolicy = FetchPolicy::all}});
    for (const Option& option : sharedOptions()) {
        // The others mean something else to some verbs.
        if (option.name == OptionName::format || option.name == OptionName::hashes) continue;
        const std::string* const value = command.find(spelled(option.name, Spelling::kebab));
        if (value) reader.read(option.name, option.kind == OptionKind::flag ? "true" : *value);
    }
    return reader.options();
}

/// Whether what a verb makes has to come out the same every day.
bool isRepeated(const Command& command) { return VerbSet{Verb::snapshot, Verb::check}.contains(command.verb); }

/// The moment where none is given: the same for all documents of a command.
Date usualMoment(const Command& command) {
    return isRepeated(command) ? *Date::parseRFC3339(repeatableMoment) : Date::now();
}

WidgetOptions widgetOptionsOf(const Command& command, Date usual) {
    WidgetOptions options = optionsOf(command).widget;
    if (!options.date) options.date = usual;
    if (!options.timeZone) options.timeZone = isRepeated(command) ? TimeZone() : TimeZone::current();
    options.fetchPolicy = readFetchPolicy(command);
    return options;
}

constexpr std::string_view documentWanted = " DOC` wants a file or a folder, or \"-\" for standard input";

/// The words that name documents. Throws `UsageError` where there are too few or too many.
std::vector<std::string> documentWords(const Command& command) {
    const std::string verb(name(command.verb));
    std::vector<std::string> words = command.operands;
    if (words.empty()) throw UsageError("which document? `tavrin " + verb + std::string(documentWanted));
    if (command.verb != Verb::explain) return words;
    if (words.size() > 2)
        throw UsageError("`tavrin explain` takes one document and one path, not " + std::to_string(words.size()) +
                         " words");
    words.resize(1);
    return words;
}

/// The documents that are worked on, of which some verbs take one only.
std::vector<Operand> documentsOf(const Command& command) {
    std::vector<Operand> documents = expandedOperands(documentWords(command));
    constexpr VerbSet ofOne{Verb::tree, Verb::layout, Verb::targets, Verb::explain};
    if (ofOne.contains(command.verb) && documents.size() > 1)
        throw UsageError("`tavrin " + std::string(name(command.verb)) + "` takes one document, not " +
                         std::to_string(documents.size()));
    return documents;
}

void checkStandardInput(const Command& command, const std::vector<Operand>& documents) {
    auto users = std::ranges::count(documents, "-", &Operand::path);
    for (const std::string_view option : {"--model", "--models"})
        if (const std::string* value = command.find(option); value && *value == "-") ++users;
    if (users > 1) throw UsageError("standard input (\"-\") can be read only once");
}

/// `usual` has what does not depend on the document: the fonts, opened once, and the moment where none is given.
DocumentInput inputOf(const Operand& operand, const Command& command, const WidgetOptions& usual) {
    DocumentInput input{
        .path = operand.path, .namedAs = operand.namedAs, .widget = widgetOptionsOf(command, *usual.date)};
    input.widget.fonts = usual.fonts;
    if (const std::string* model = command.find("--model")) input.model = *model;
    if (const std::string* folder = command.find("--image-cache-dir")) input.imageCacheDir = *folder;
    // Where pictures go, not where they are looked for.
    if (command.verb == Verb::fetch) input.widget.imageCacheDir.reset();
    return input;
}

/// What lies beside a document, or why that is not known.
struct Beside {
    WidgetFiles files = {};
    WidgetSettings settings = {};
    std::exception_ptr fault = nullptr;
};

Beside besideOf(const Operand& operand, const Command& command) {
    if (operand.path == "-") return {};
    const bool hasModels = command.find("--model") || command.find("--models");  // and needs no others
    try {
        const WidgetFiles files = pairedWith(operand.path, hasModels ? ModelsFolder::unlisted : ModelsFolder::listed);
        return {files, settingsOf(files)};
    } catch (const SettingsError&) {
        return {.fault = std::current_exception()};
    } catch (const IOError&) {
        return {.fault = std::current_exception()};
    }
}

/// Whether a command asks for all that a widget is meant for, and not only for the first of it.
bool drawsSeveral(const Command& command) {
    constexpr VerbSet judging{Verb::check, Verb::snapshot};
    return judging.contains(command.verb) || (command.verb == Verb::render && asksForMatrix(command));
}

}  // namespace

DocumentInputs readInputs(const Command& command) {
    DocumentInputs inputs;
    inputs.operands = documentsOf(command);
    checkStandardInput(command, inputs.operands);
    WidgetOptions usual = readWidgetOptions(command);
    usual.date = usualMoment(command);
    inputs.common.budget = usual.budget;
    if (command.verb == Verb::fetch && !command.find("--image-cache-dir"))
        throw UsageError("where to? `tavrin fetch` wants --image-cache-dir DIR");
    inputs.common.modelsEndRun =
        inputs.operands.size() == 1 || command.find("--model") != nullptr || command.find("--models") != nullptr;
    for (const Operand& operand : inputs.operands) {
        const Beside beside = besideOf(operand, command);
        if (beside.fault && inputs.operands.size() == 1) std::rethrow_exception(beside.fault);
        inputs.paired.push_back(paired(command, beside.files, beside.settings, drawsSeveral(command)));
        inputs.common.documents.push_back(inputOf(operand, inputs.paired.back().command, usual));
        inputs.common.documents.back().fault = beside.fault;
    }
    return inputs;
}

FetchPolicy readFetchPolicy(const Command& command) {
    const bool isOffline = command.find("--offline") != nullptr;
    refuseBoth(command, {"--offline", "--fetch"});
    FetchPolicy policy = isOffline ? FetchPolicy::none : FetchPolicy::all;
    if (const std::string* word = command.find("--fetch"))
        policy = static_cast<FetchPolicy>(readWord("--fetch", *word, fetchWords));
    return policy;
}

WidgetOptions readWidgetOptions(const Command& command) { return optionsOf(command).withFonts(); }

}  // namespace tavrin::cli
