// SPDX-License-Identifier: MIT
#include "cli/arguments.h"

#include <algorithm>
#include <utility>

#include "cli/destination.h"
#include "cli/matrix/matrix_options.h"
#include "cli/several_options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::cli {
namespace {

constexpr Size defaultScreen{390, 844};
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

Size screenOf(const Values& values) {
    const std::string* const screen = values.find("--screen");
    return screen ? readSize("--screen", *screen) : defaultScreen;
}

FetchPolicy fetchPolicyOf(const Values& values) {
    const bool isOffline = values.find("--offline") != nullptr;
    refuseBoth(values.command(), {"--offline", "--fetch"});
    FetchPolicy policy = isOffline ? FetchPolicy::none : FetchPolicy::all;
    values.choose("--fetch", fetchWords, policy);
    return policy;
}

WidgetOptions widgetOptionsOf(const Values& values) {
    // Snapshots and checks have to come out the same every day; else all documents show the same moment.
    constexpr VerbSet repeated{Verb::snapshot, Verb::check};
    const bool isRepeated = repeated.contains(values.command().verb);
    WidgetOptions options = readWidgetOptions(values.command());
    if (!options.date) options.date = isRepeated ? *Date::parseRFC3339(repeatableMoment) : Date::now();
    if (!options.timeZone) options.timeZone = isRepeated ? TimeZone() : TimeZone::current();
    options.fetchPolicy = fetchPolicyOf(values);
    return options;
}

void checkDocuments(const Command& command) {
    const std::string verb(name(command.verb));
    const std::size_t count = command.operands.size();
    if (count == 0)
        throw UsageError("which document? `tavrin " + verb + " DOC` wants a file, or \"-\" for standard input");
    constexpr VerbSet ofOne{Verb::tree, Verb::layout, Verb::targets};
    if (command.verb == Verb::explain && count > 2)
        throw UsageError("`tavrin explain` takes one document and one path, not " + std::to_string(count) + " words");
    if (ofOne.contains(command.verb) && count > 1)
        throw UsageError("`tavrin " + verb + "` takes one document, not " + std::to_string(count));
}

void checkStandardInput(const DocumentArguments& arguments, const std::string* models) {
    const auto users = std::ranges::count(arguments.documents, "-") + (arguments.model == "-" ? 1 : 0) +
                       (models && *models == "-" ? 1 : 0);
    if (users > 1) throw UsageError("standard input (\"-\") can be read only once");
}

DocumentArguments documentArgumentsOf(const Values& values) {
    const Command& command = values.command();
    const bool isFetch = command.verb == Verb::fetch;
    DocumentArguments arguments;
    arguments.documents = command.operands;
    if (command.verb == Verb::explain && command.operands.size() == 2) arguments.documents.pop_back();
    if (const std::string* model = values.find("--model")) arguments.model = *model;
    checkStandardInput(arguments, values.find("--models"));
    arguments.widget = widgetOptionsOf(values);
    if (const std::string* folder = values.find("--image-cache-dir")) arguments.imageCacheDir = *folder;
    if (isFetch && !arguments.imageCacheDir) throw UsageError("where to? `tavrin fetch` wants --image-cache-dir DIR");
    if (isFetch) arguments.widget.imageCacheDir.reset();  // where pictures go, not where they are looked for
    arguments.failsOnMissing = values.find(failOnMissing) != nullptr;
    std::size_t ignored = 0;
    values.choose("--errors", textFormatWords, ignored);
    return arguments;
}

bool namesFile(const std::string& output) {
    return (formatOf(output) || !animationWord(output).empty()) && !namesFolder(output);
}

/// Refuses a quality of pictures that have none.
void checkQuality(const DocumentArguments& arguments, std::string_view pictures) {
    if (arguments.widget.quality) throw UsageError("--quality is for jpeg and webp, not for " + std::string(pictures));
}

/// Draws the only picture that a matrix has of each document as if it had been asked for by singular options.
void drawOnlyPicture(const Matrix& matrix, DocumentArguments& arguments) {
    arguments.widget.room = matrix.rooms.front();
    arguments.widget.scale = matrix.scales.front();
    arguments.widget.appearance = matrix.appearances.front();
    arguments.widget.date = matrix.moments.front().date;
    arguments.model = matrix.models.front().path;
}

[[noreturn]] void failKey() {
    throw UsageError("--key names the pictures of models that are lines of a file: --models FILE");
}

/// What plural options ask for: a matrix, or one with each line of a file; or else that is one picture of each document
/// and no folder is named, which is drawn like any other.
std::optional<Arguments> readMatrixArguments(const Values& values, DocumentArguments& common) {
    if (values.find("--frames"))
        throw UsageError("--frames draws a span of one picture; give no plural options with it");
    const std::string* const lines = findModelLines(values.command());
    const std::string* const key = values.find("--key");
    if (key && !lines) failKey();
    Matrix matrix = readMatrix(values.command(), screenOf(values), *common.widget.date);
    const std::string* const output = values.find("--output");
    const bool namesNoFolder = !output || output->empty() || *output == "-";
    if (!lines && matrix.count() == matrix.documents.size() && (namesNoFolder || namesFile(*output))) {
        drawOnlyPicture(matrix, common);
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

Arguments readRenderArguments(const Values& values, DocumentArguments common) {
    if (asksForMatrix(values.command()))
        if (auto arguments = readMatrixArguments(values, common)) return *std::move(arguments);
    if (values.find("--key")) failKey();
    if (values.find("--hashes"))
        throw UsageError("--hashes is for the index of several pictures of a document; there is none of this command");
    RenderArguments arguments{std::move(common)};
    arguments.frames = readFrames(values.command());
    if (arguments.frames) {
        if (arguments.failsOnMissing) throw UsageError("--fail-on-missing is for single pictures, not for frames");
        checkQuality(arguments, "frames, which are without loss");
        arguments.widget.date = arguments.frames->span.first;
        return arguments;
    }
    arguments.destination = readDestination(arguments.documents, values.find("--output"), values.find("--format"));
    const PictureFormat format = arguments.destination.format;
    if (format != PictureFormat::jpeg && format != PictureFormat::webp) checkQuality(arguments, name(format));
    return arguments;
}

Arguments readExplainArguments(const Values& values, DocumentArguments common) {
    ExplainArguments arguments{std::move(common)};
    arguments.widget.trace = WidgetTrace::reasons;
    if (values.command().operands.size() == 2) arguments.path = values.command().operands.back();
    values.choose("--format", textFormatWords, arguments.format);
    return arguments;
}

Arguments readCheckArguments(const Values& values, DocumentArguments common) {
    CheckArguments arguments{std::move(common)};
    CheckOptions& options = arguments.check;
    values.choose("--format", checkFormatWords, options.format);
    options.fixes = values.find("--fix") != nullptr;
    options.isStrict = values.find("--strict") != nullptr;
    options.showsNotes = values.find("--notes") != nullptr;
    options.rooms = readRooms(values.command(), screenOf(values));
    options.appearances = readAppearances(values.command(), {Appearance::light, Appearance::dark});
    if (options.fixes && std::ranges::count(arguments.documents, "-") > 0)
        throw UsageError("--fix changes files; standard input (\"-\") is none");
    return arguments;
}

Arguments readSnapshotArguments(const Values& values, DocumentArguments common) {
    SnapshotOptions options = readSnapshotOptions(values.command());
    // Wherever one stands, snapshots have the same names.
    const std::filesystem::path& folder = options.folder;
    Matrix matrix = readMatrix(values.command(), screenOf(values), *common.widget.date, {folder, folder / ".."});
    return SnapshotArguments{std::move(common), std::move(matrix), std::move(options)};
}

}  // namespace

Arguments readArguments(const Command& command) {
    const Values values(command);
    checkDocuments(command);
    DocumentArguments common = documentArgumentsOf(values);
    switch (command.verb) {
        case Verb::render: return readRenderArguments(values, std::move(common));
        case Verb::explain: return readExplainArguments(values, std::move(common));
        case Verb::snapshot: return readSnapshotArguments(values, std::move(common));
        case Verb::check: return readCheckArguments(values, std::move(common));
        case Verb::fetch: return FetchArguments{std::move(common)};
        default: return PrintArguments{std::move(common), command.verb};
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
    arguments.usual.widget = readWidgetOptions(command);
    arguments.usual.widget.fetchPolicy = fetchPolicyOf(values);
    arguments.failsOnMissing = values.find(failOnMissing) != nullptr;
    arguments.usual.screen = screenOf(values);
    arguments.usual.hashes = values.find("--hashes") != nullptr;
    if (!arguments.usual.widget.timeZone) arguments.usual.widget.timeZone = TimeZone::current();
    if (const std::string* word = values.find("--format"))
        arguments.format = static_cast<PictureFormat>(readWord("--format", *word, pictureFormatWords));
    return arguments;
}

WidgetOptions readWidgetOptions(const Command& command) {
    OptionReader reader(Spelling::kebab, OptionReader::Types::texts, {.widget = {.fetchPolicy = FetchPolicy::all}});
    for (const Option& option : sharedOptions()) {
        // The others mean something else to some verbs.
        if (option.name == OptionName::format || option.name == OptionName::hashes) continue;
        const std::string* const value = command.find(spelled(option.name, Spelling::kebab));
        if (value) reader.read(option.name, option.kind == OptionKind::flag ? "true" : *value);
    }
    return reader.options().withFonts();
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
