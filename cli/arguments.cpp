// SPDX-License-Identifier: MIT
#include "cli/arguments.h"

#include <algorithm>
#include <utility>

#include "cli/destination.h"
#include "cli/matrix/matrix_options.h"
#include "cli/option_values.h"
#include "cli/several_options.h"
#include "cli/usage_error.h"

namespace tavrin::cli {
namespace {

constexpr Size defaultScreen{390, 844};

/// The options' values, read as they are asked for.
class Values {
public:
    explicit Values(const Command& command) : command_(command) {}

    [[nodiscard]] const Command& command() const { return command_; }
    [[nodiscard]] const std::string* find(std::string_view option) const { return command_.find(option); }

    template <class Read, class Value>
    void read(std::string_view option, Read read, Value& into) const {
        if (const std::string* text = find(option)) into = read(option, *text);
    }

    template <class Value>
    void choose(std::string_view option, std::span<const std::string_view> words, Value& into) const {
        if (const std::string* text = find(option)) into = static_cast<Value>(readWord(option, *text, words));
    }

private:
    const Command& command_;
};

Size screenOf(const Values& values) {
    Size screen = defaultScreen;
    values.read("--screen", readSize, screen);
    return screen;
}

WidgetRoom roomOf(const Values& values) {
    refuseBoth(values.command(), {"--size", "--family"});
    const std::string* const size = values.find("--size");
    const std::string* const family = values.find("--family");
    const Size screen = screenOf(values);
    if (size) return {.name = *size, .size = readSize("--size", *size)};
    return readFamily("--family", family ? *family : defaultFamily, screen);
}

RenderOptions renderOptionsOf(const Values& values, Verb verb) {
    RenderOptions options;
    options.setRoom(roomOf(values));
    values.read("--scale", readScale, options.scale);
    values.read("--background", readBackground, options.background);
    values.choose("--compression", compressionWords, options.compression);
    options.rounded = values.find("--rounded") != nullptr;

    EnvironmentValues& environment = options.environment;
    values.choose("--appearance", appearanceWords, environment.appearance);
    // A snapshot has to come out the same again.
    const bool isSnapshot = verb == Verb::snapshot;
    environment.date = isSnapshot ? *Date::parseRFC3339(snapshotMoment) : Date::now();
    values.read("--date", readDate, environment.date);
    if (const std::string* zone = values.find("--time-zone"))
        environment.timeZone = readTimeZone("--time-zone", *zone);
    else
        environment.timeZone = isSnapshot ? TimeZone() : TimeZone::current();
    environment.displayScale = options.scale;
    return options;
}

void checkDocuments(const Command& command) {
    const std::string verb(verbs()[static_cast<std::size_t>(command.verb)].name);
    const std::size_t count = command.operands.size();
    if (count == 0)
        throw UsageError("which document? `tavrin " + verb + " DOC` wants a file, or \"-\" for standard input");
    constexpr VerbSet ofOne{Verb::tree, Verb::layout, Verb::targets};
    const bool takesOne = ofOne.contains(command.verb);
    if (command.verb == Verb::explain && count > 2)
        throw UsageError("`tavrin explain` takes one document and one path, not " + std::to_string(count) + " words");
    if (takesOne && count > 1)
        throw UsageError("`tavrin " + verb + "` takes one document, not " + std::to_string(count));
}

void checkStandardInput(const Arguments& arguments) {
    const auto users =
        std::count(arguments.documents.begin(), arguments.documents.end(), "-") + (arguments.model == "-" ? 1 : 0);
    if (users > 1) throw UsageError("standard input (\"-\") can be read only once");
}

FetchPolicy fetchPolicyOf(const Values& values) {
    const bool isOffline = values.find("--offline") != nullptr;
    refuseBoth(values.command(), {"--offline", "--fetch"});
    FetchPolicy policy = isOffline ? FetchPolicy::none : FetchPolicy::all;
    values.choose("--fetch", fetchWords, policy);
    return policy;
}

bool namesFile(const std::string& output) {
    return (namesPictureFormat(output) || namesAnimationFormat(output)) && !namesFolder(output);
}

/// Draws the only picture that a matrix has of each document as if it had been asked for by singular options.
void drawOnlyPicture(const Matrix& matrix, Arguments& arguments) {
    arguments.options.setRoom(matrix.rooms.front());
    arguments.options.scale = arguments.options.environment.displayScale = matrix.scales.front();
    arguments.options.environment.appearance = matrix.appearances.front();
    arguments.options.environment.date = matrix.moments.front().date;
    arguments.model = matrix.models.front().path;
}

/// Judges plural options. Where they ask for one picture of each document and no folder is named, it is drawn like
/// any other.
void readMatrixArguments(const Command& command, const Values& values, Arguments& arguments) {
    if (values.find("--frames"))
        throw UsageError("--frames draws a span of one picture; give no plural options with it");
    Matrix matrix = readMatrix(command, screenOf(values), arguments.options.environment.date);
    const std::string* const output = values.find("--output");
    const bool namesNoFolder = !output || output->empty() || *output == "-";
    if (matrix.count() == matrix.documents.size() && (namesNoFolder || namesFile(*output)))
        return drawOnlyPicture(matrix, arguments);
    if (namesNoFolder) throw UsageError("where to? several pictures of a document want a folder: --output DIR");
    if (namesFile(*output))
        throw UsageError("several pictures cannot go to one file; give a folder instead of '" + *output + "'");
    if (const std::string* format = values.find("--format"); format && *format != "png")
        throw UsageError("several pictures of a document are drawn as png, not " + *format);
    arguments.matrix = std::move(matrix);
    arguments.matrixFolder = *output;
}

}  // namespace

Arguments readArguments(const Command& command) {
    const Values values(command);
    checkDocuments(command);
    Arguments arguments;
    arguments.verb = command.verb;
    arguments.documents = command.operands;
    if (command.verb == Verb::explain && command.operands.size() == 2) {
        arguments.path = command.operands.back();
        arguments.documents.pop_back();
    }
    if (const std::string* model = values.find("--model")) arguments.model = *model;
    checkStandardInput(arguments);
    arguments.options = renderOptionsOf(values, command.verb);
    values.read("--max-image-size", readSize, arguments.maxImageSize);
    values.read("--image-cache-dir", readFolder, arguments.imageCacheDir);
    if (command.verb == Verb::fetch && !arguments.imageCacheDir)
        throw UsageError("where to? `tavrin fetch` wants --image-cache-dir DIR");
    arguments.fetchPolicy = fetchPolicyOf(values);
    std::size_t ignored = 0;
    values.choose("--errors", textFormatWords, ignored);
    if (command.verb == Verb::explain) values.choose("--format", textFormatWords, arguments.textFormat);
    if (command.verb == Verb::check) arguments.check = readCheckOptions(command, screenOf(values));
    if (command.verb == Verb::snapshot) {
        arguments.snapshot = readSnapshotOptions(command);
        // Wherever one stands, snapshots have the same names.
        const std::filesystem::path& folder = arguments.snapshot->folder;
        arguments.matrix =
            readMatrix(command, screenOf(values), arguments.options.environment.date, {folder, folder / ".."});
        return arguments;
    }
    if (command.verb == Verb::render && asksForMatrix(command)) readMatrixArguments(command, values, arguments);
    if (arguments.matrix) return arguments;
    arguments.frames = readFrames(command);
    if (arguments.frames)
        arguments.options.environment.date = arguments.frames->span.first;
    else if (command.verb == Verb::render)
        arguments.destination = readDestination(arguments.documents, values.find("--output"), values.find("--format"));
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
