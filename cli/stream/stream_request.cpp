// SPDX-License-Identifier: MIT
#include "cli/stream/stream_request.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "cli/destination.h"
#include "cli/json_member.h"
#include "cli/project/beside_options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/json_options.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/doors/words.h"
#include "tavrin/json/json_text.h"
#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin::cli {
namespace {

constexpr std::array<std::string_view, 5> requestMembers{"document", "name", "model", "options", "output"};

void checkMembers(const JSONElement& line) {
    if (line.kind() != JSONKind::object)
        throw UsageError("a line is an object with " + listed(requestMembers) + ", not " +
                         std::string(describe(line.kind())));
    for (JSONElement::Walk walk(line); walk.next();)
        if (std::find(requestMembers.begin(), requestMembers.end(), walk.key()) == requestMembers.end())
            throw UsageError("a line has no '" + std::string(walk.key()) + "'" +
                             suggestion(walk.key(), requestMembers));
}

/// A member that is a file's name.
std::optional<std::string> fileIn(std::string_view name, const JSONElement& value) {
    if (!value.exists() || value.isNull()) return std::nullopt;
    if (!value.isString())
        throw UsageError(std::string(name) + " takes the name of a file, not " + std::string(describe(value.kind())));
    std::string file(value.string());
    if (file.empty() || file == "-" || file.find('\0') != std::string::npos)
        throw UsageError(std::string(name) + " takes the name of a file, not '" + file + "'");
    return file;
}

PictureFormat formatOfOutput(const std::string& output, std::optional<PictureFormat> asked,
                             std::optional<PictureFormat> usual) {
    const std::optional<PictureFormat> named = formatOf(output);
    if (named && asked && *named != *asked)
        throw UsageError("the format " + std::string(name(*asked)) + " contradicts the suffix of '" + output + "'");
    if (named) return *named;
    if (asked || usual) return asked ? *asked : *usual;
    throw UsageError(
        "output takes a name that ends in .png, .svg, .pdf, .webp or .jpg, or the option format says what '" + output +
        "' is");
}

void refuseToOverwrite(const StreamRequest& request, const Pairing& beside) {
    if (!request.output || request.document) return;
    const auto refuse = [&](const std::filesystem::path& file, const char* what) {
        std::error_code error;
        if (std::filesystem::equivalent(file, *request.output, error))
            throw UsageError("'" + *request.output + "' would be written over the " + what);
    };
    refuse(request.name, "document");
    const WidgetFiles& files = *beside.files;
    if (request.modelFile) refuse(*request.modelFile, "model");
    if (files.model) refuse(*files.model, "model");
    if (files.settings) refuse(*files.settings, "settings");
    const std::filesystem::path output = *request.output;
    std::error_code error;
    const auto folder = output.has_parent_path() ? output.parent_path() : std::filesystem::path(".");
    if (files.modelsFolder && std::filesystem::equivalent(folder, *files.modelsFolder, error) &&
        std::ranges::binary_search(files.models, *files.modelsFolder / output.filename()))
        throw UsageError("'" + *request.output + "' would be written over a model");
}

/// Which options a line says itself, of those that take the place of others.
struct SaidInLine {
    bool size = false;
    bool fetches = false;

    explicit SaidInLine(const JSONElement& options) {
        if (!options.exists() || options.kind() != JSONKind::object) return;  // which reading them refuses
        for (JSONElement::Walk walk(options); walk.next();) {
            if (walk.key() == spelled(OptionName::size, Spelling::camel)) size = !walk.value().isNull();
            if (walk.key() == spelled(OptionName::fetch, Spelling::camel))
                fetches = walk.value().isString() && walk.value().string() != fetchWords[indexOf(FetchPolicy::none)];
        }
    }
};

void readPairing(OptionReader& reader, const Pairing& beside, const JSONElement& options,
                 const std::set<OptionName>& said) {
    const SaidInLine line(options);
    readBeside(reader, *beside.files, *beside.settings, [&](OptionName option) {
        return said.contains(option) || (line.size && option == OptionName::size) ||
               (line.fetches && option == OptionName::imageCacheDir);
    });
}

}  // namespace

/// 1. What is asked for, and where.
/// 2. Its options: the command line's, those beside the document that it has not said, and then the line's.
/// 3. The model that lies beside the document, in the family that it is now drawn in.
StreamRequest readStreamRequest(std::string_view line, const StreamArguments& arguments, KeptPairings& pairings) {
    const JSONText text(line);
    checkMembers(text.root());
    const auto [document, name, model, options, output] = text.root().findMembers<requestMembers>();

    StreamRequest request;
    request.document = textMember(line, "document", document);
    const std::optional<std::string> file = fileIn("name", name);
    if (request.document.has_value() == file.has_value())
        throw UsageError(file ? "a line has a document or a name, not both"
                              : "which document? a line has it as \"document\", or its file as \"name\"");
    request.name = file.value_or("");
    request.model = textMember(line, "model", model);
    request.output = fileIn("output", output);

    OptionReader reader(Spelling::camel, OptionReader::Types::own, arguments.usual);
    Pairing beside;
    if (file) {
        beside = pairings.find(*file);
        readPairing(reader, beside, options, arguments.said);
    }
    if (options.exists() && !options.isNull()) readOptions(reader, options);
    request.options = reader.options();
    request.options.widget = request.options.withFonts();
    const std::optional<PictureFormat> asked = reader.pictureOptions().format;
    request.options.format = request.output ? formatOfOutput(*request.output, asked, arguments.format)
                                            : asked.value_or(arguments.format.value_or(PictureFormat::png));
    if (file && !request.model)
        if (const auto own = modelFile(*beside.files, *beside.settings, request.options.widget.room.name))
            request.modelFile = own->string();
    refuseToOverwrite(request, beside);
    return request;
}

}  // namespace tavrin::cli
