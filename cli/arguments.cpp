// SPDX-License-Identifier: MIT
#include "cli/arguments.h"

#include <algorithm>
#include <utility>

#include "cli/destination.h"
#include "cli/document_inputs.h"
#include "cli/matrix/matrix_options.h"
#include "cli/several_options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view failOnMissing = "--fail-on-missing";

/// The options' values, read as they are asked for.
class Values {
public:
    explicit Values(const Command& command) : command_(command) {}

    [[nodiscard]] const Command& command() const { return command_; }
    [[nodiscard]] const std::string* find(std::string_view option) const { return command_.find(option); }

    template <class Value>
    void choose(std::string_view option, std::span<const std::string_view> words, Value& into) const {
        if (const std::string* text = find(option)) into = static_cast<Value>(readWord(option, *text, words));
    }

private:
    const Command& command_;
};

bool namesFile(const std::string& output) {
    return (formatOf(output) || !animationWord(output).empty()) && !namesFolder(output);
}

/// Refuses a quality of pictures that have none.
void checkQuality(const DocumentArguments& arguments, std::string_view pictures) {
    if (arguments.documents.front().widget.quality)
        throw UsageError("--quality is for jpeg and webp, not for " + std::string(pictures));
}

/// Draws the only picture that a matrix has of each document as if it had been asked for by singular options.
void drawOnlyPictures(const Matrix& matrix, DocumentArguments& arguments) {
    for (const Cell& cell : matrix.cells) {
        DocumentInput& document = arguments.documents[cell.document];
        document.widget.room = matrix.rooms[cell.room];
        document.widget.scale = matrix.scales[cell.scale];
        document.widget.appearance = matrix.appearances[cell.appearance];
        document.widget.date = matrix.moments[cell.moment].date;
        document.model = matrix.models[cell.model].path;
    }
}

/// What plural options ask for, each document with what lies beside it. `tops` are those of `namedDocuments`.
Matrix readMatrix(const DocumentInputs& inputs, const std::vector<std::filesystem::path>& tops = {}) {
    std::vector<MatrixLooks> looks;
    for (std::size_t at = 0; at < inputs.paired.size(); ++at)
        looks.push_back(readLooks(inputs.paired[at], *inputs.common.documents[at].widget.date));
    return matrixOf(namedDocuments(inputs.operands, tops), looks);
}

[[noreturn]] void failKey() {
    throw UsageError("--key names the pictures of models that are lines of a file: --models FILE");
}

/// What plural options ask for: a matrix, or one with each line of a file; or else that is one picture of each document
/// and no folder is named, which is drawn like any other.
std::optional<Arguments> readMatrixArguments(const Values& values, DocumentInputs& inputs) {
    if (values.find("--frames"))
        throw UsageError("--frames draws a span of one picture; give no plural options with it");
    const std::string* const lines = findModelLines(values.command());
    const std::string* const key = values.find("--key");
    if (key && !lines) failKey();
    DocumentArguments& common = inputs.common;
    Matrix matrix = readMatrix(inputs);
    const std::string* const output = values.find("--output");
    const bool namesNoFolder = !output || output->empty() || *output == "-";
    if (!lines && matrix.count() == matrix.documents.size() && (namesNoFolder || namesFile(*output))) {
        drawOnlyPictures(matrix, common);
        return std::nullopt;
    }
    if (namesNoFolder) throw UsageError("where to? several pictures of a document want a folder: --output DIR");
    if (namesFile(*output))
        throw UsageError("several pictures cannot go to one file; give a folder instead of '" + *output + "'");
    if (const std::string* format = values.find("--format"); format && *format != "png")
        throw UsageError("several pictures of a document are drawn as png, not " + *format);
    checkQuality(common, "png");
    MatrixArguments arguments{std::move(common), std::move(matrix), *output, values.find("--hashes") != nullptr};
    if (!lines) return arguments;
    return LinesArguments{std::move(arguments), *lines, key ? std::optional(ModelKey(*key)) : std::nullopt};
}

Arguments readRenderArguments(const Values& values, DocumentInputs inputs) {
    if (asksForMatrix(values.command()))
        if (auto arguments = readMatrixArguments(values, inputs)) return *std::move(arguments);
    if (values.find("--key")) failKey();
    if (values.find("--hashes"))
        throw UsageError("--hashes is for the index of several pictures of a document; there is none of this command");
    RenderArguments arguments{std::move(inputs.common)};
    std::vector<std::string> names;
    for (const Operand& operand : inputs.operands) names.push_back(operand.namedAs);
    arguments.frames = readFrames(values.command(), names);
    if (arguments.frames) {
        if (arguments.failsOnMissing) throw UsageError("--fail-on-missing is for single pictures, not for frames");
        checkQuality(arguments, "frames, which are without loss");
        arguments.documents.front().widget.date = arguments.frames->span.first;
        return arguments;
    }
    arguments.destination = readDestination(names, values.find("--output"), values.find("--format"));
    const PictureFormat format = arguments.destination.format;
    if (format != PictureFormat::jpeg && format != PictureFormat::webp) checkQuality(arguments, name(format));
    return arguments;
}

Arguments readExplainArguments(const Values& values, DocumentArguments common) {
    ExplainArguments arguments{std::move(common)};
    arguments.documents.front().widget.trace = WidgetTrace::reasons;
    if (values.command().operands.size() == 2) arguments.path = values.command().operands.back();
    values.choose("--format", textFormatWords, arguments.format);
    return arguments;
}

/// A look for each model, with the rooms that it is for.
std::vector<CheckedLook> checkedLooks(const PairedCommand& paired) {
    const std::vector<WidgetRoom> rooms = readRooms(paired.command, paired.screenSizes());
    const auto appearances = readAppearances(paired.command, {Appearance::light, Appearance::dark});
    std::vector<CheckedLook> looks;
    const auto lookWith = [&](const std::optional<std::string>& model) -> CheckedLook& {
        const auto found = std::ranges::find(looks, model, &CheckedLook::model);
        return found == looks.end() ? looks.emplace_back(CheckedLook{model, {}, appearances}) : *found;
    };
    for (const auto& modelByRoom : readModels(paired, rooms))
        for (std::size_t at = 0; at < rooms.size(); ++at)
            if (modelByRoom[at]) lookWith(modelByRoom[at]->path).rooms.push_back(rooms[at]);
    return looks;
}

Arguments readCheckArguments(const Values& values, DocumentInputs inputs) {
    CheckArguments arguments{std::move(inputs.common)};
    CheckOptions& options = arguments.check;
    values.choose("--format", checkFormatWords, options.format);
    options.fixes = values.find("--fix") != nullptr;
    options.isStrict = values.find("--strict") != nullptr;
    options.showsNotes = values.find("--notes") != nullptr;
    for (const PairedCommand& paired : inputs.paired) arguments.looks.push_back(checkedLooks(paired));
    if (options.fixes && std::ranges::count(arguments.documents, "-", &DocumentInput::path) > 0)
        throw UsageError("--fix changes files; standard input (\"-\") is none");
    return arguments;
}

Arguments readSnapshotArguments(const Values& values, DocumentInputs inputs) {
    SnapshotOptions options = readSnapshotOptions(values.command());
    // Wherever one stands, snapshots have the same names.
    const std::filesystem::path& folder = options.folder;
    Matrix matrix = readMatrix(inputs, {folder, folder / ".."});
    return SnapshotArguments{std::move(inputs.common), std::move(matrix), std::move(options)};
}

}  // namespace

Arguments readArguments(const Command& command) {
    const Values values(command);
    DocumentInputs inputs = readInputs(command);
    inputs.common.failsOnMissing = values.find(failOnMissing) != nullptr;
    std::size_t ignored = 0;
    values.choose("--errors", textFormatWords, ignored);
    switch (command.verb) {
        case Verb::render: return readRenderArguments(values, std::move(inputs));
        case Verb::explain: return readExplainArguments(values, std::move(inputs.common));
        case Verb::snapshot: return readSnapshotArguments(values, std::move(inputs));
        case Verb::check: return readCheckArguments(values, std::move(inputs));
        case Verb::fetch: return FetchArguments{std::move(inputs.common)};
        default: return PrintArguments{std::move(inputs.common), command.verb};
    }
}

StreamArguments readStreamArguments(const Command& command) {
    const Values values(command);
    if (!command.operands.empty())
        throw UsageError("`tavrin render --jsonl` takes no document; each line of standard input has its own");
    std::vector<std::string> known{"--jsonl", "--errors", "--offline", std::string(failOnMissing)};
    for (const Option& option : sharedOptions()) known.push_back(spelled(option.name, Spelling::kebab));
    for (const auto& [option, value] : command.values)
        if (std::ranges::count(known, option) == 0)
            throw UsageError(std::string(option) + " does not go with --jsonl: each line says what it wants");
    StreamArguments arguments;
    for (const Option& option : sharedOptions())
        if (values.find(spelled(option.name, Spelling::kebab))) arguments.said.insert(option.name);
    arguments.usual.widget = readWidgetOptions(command);
    arguments.usual.widget.fetchPolicy = readFetchPolicy(command);
    // What is to be fetched is not looked for beside a document.
    if (values.find("--fetch") && arguments.usual.widget.fetchPolicy != FetchPolicy::none)
        arguments.said.insert(OptionName::imageCacheDir);
    arguments.failsOnMissing = values.find(failOnMissing) != nullptr;
    if (const std::string* screen = values.find("--screen")) arguments.usual.screen = readSize("--screen", *screen);
    arguments.usual.hashes = values.find("--hashes") != nullptr;
    if (!arguments.usual.widget.timeZone) arguments.usual.widget.timeZone = TimeZone::current();
    if (const std::string* word = values.find("--format"))
        arguments.format = static_cast<PictureFormat>(readWord("--format", *word, pictureFormatWords));
    return arguments;
}

TextFormat errorFormatOf(std::span<const std::string> words) {
    TextFormat format = TextFormat::text;
    for (std::size_t i = 0; i < words.size() && words[i] != "--"; ++i) {
        const bool isNext = words[i] == "--errors" && i + 1 < words.size();
        const std::string_view value = isNext ? std::string_view(words[i + 1]) : words[i];
        if (value == (isNext ? "json" : "--errors=json")) format = TextFormat::json;
    }
    return format;
}

}  // namespace tavrin::cli
