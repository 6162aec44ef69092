// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/io_error.h"
#include "cli/matrix/model_lines.h"
#include "cli/matrix/sha256.h"
#include "cli/missing_pictures.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/production.h"
#include "cli/stream/kept_documents.h"
#include "cli/stream/stream_request.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/strings/base64.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/time/rfc3339.h"
#include "tavrin/widget/kept_pictures.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

/// What came of one line.
struct StreamAnswer {
    std::size_t line = 0;
    std::optional<std::string> output = std::nullopt;
    std::string picture = {};
    Size size = {};  ///< in pixels; of what is not made of them, in points
    std::optional<Date> validUntil = std::nullopt;
    std::string sha256 = {};  ///< empty unless it is asked for
    std::vector<std::string> notes = {};
    std::optional<Failure> failure = std::nullopt;
};

/// The JSON of an answer, on one line.
std::string answerText(const StreamAnswer& answer) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("line").value(std::uint64_t{answer.line});
    if (answer.failure) {
        writeMembers(*answer.failure, writer.key("error").beginObject());
        writer.endObject().endObject();
        return std::move(writer).text() + "\n";
    }
    if (answer.output)
        writer.key("output").value(*answer.output);
    else
        writer.key("picture").value(base64(answer.picture));
    writer.key("width").value(answer.size.width).key("height").value(answer.size.height);
    writer.key("validUntil").value(answer.validUntil ? rfc3339Text(*answer.validUntil) : std::nullopt);
    if (!answer.sha256.empty()) writer.key("sha256").value(answer.sha256);
    writer.key("notes").beginArray();
    for (const std::string& note : answer.notes) writer.value(note);
    writer.endArray().endObject();
    return std::move(writer).text() + "\n";
}

/// Draws what lines ask for, on any number of threads.
class StreamRenderer {
public:
    explicit StreamRenderer(const StreamArguments& arguments)
        : arguments_(arguments), documents_(arguments.usual.widget.budget), pairings_(arguments.usual.widget.budget) {}

    [[nodiscard]] StreamAnswer draw(const ModelLine& line) {
        StreamAnswer answer{line.source.firstLine};
        StreamRequest request;
        try {
            request = readRequest(line);
        } catch (...) {
            answer.failure = describe(std::current_exception(), line.source, nullptr);
            answer.failure->role.reset();  // it is the line that is at fault, or settings
            if (answer.failure->type == "SettingsError")
                answer.failure->message = answer.failure->file + ": " + answer.failure->message;
            return answer;
        }
        answer.output = request.output;
        draw(request, answer);
        return answer;
    }

private:
    StreamRequest readRequest(const ModelLine& line) {
        if (line.isTooLong)
            throw UsageError("the line is longer than " + std::to_string(ModelLines::maximumLineBytes) + " bytes");
        Cost cost;
        const Metering metering(arguments_.usual.widget.budget, cost);
        return readStreamRequest(line.source.text, arguments_, pairings_);
    }

    [[nodiscard]] std::shared_ptr<const ReadDocument> documentOf(StreamRequest& request) {
        if (!request.document) return documents_.find(request.name);
        return std::make_shared<const ReadDocument>(Source{"document", *std::move(request.document)},
                                                    request.options.widget.budget);
    }

    [[nodiscard]] std::shared_ptr<const Source> modelOf(StreamRequest& request) {
        if (request.model) return std::make_shared<const Source>(Source{"model", *std::move(request.model)});
        return request.modelFile ? pairings_.model(*request.modelFile) : nullptr;
    }

    /// What fails in the document or its model is told with its place there.
    void draw(StreamRequest& request, StreamAnswer& answer) {
        // What is kept of the last picture helps the next one of the same file.
        const std::optional<std::string> name = request.document ? std::nullopt : std::optional(request.name);
        std::shared_ptr<const ReadDocument> document;
        std::shared_ptr<const Source> model;
        try {
            document = documentOf(request);
            model = modelOf(request);
            if (name && !model) noteMissingModel(document->source(), answer.notes);
            WidgetOptions options = noting(std::move(request.options.widget), answer.notes);
            if (!options.date) options.date = Date::now();
            const auto modelText = model ? std::optional<std::string_view>(model->text) : std::nullopt;
            Widget widget = document->decoded().widget(modelText, options);
            if (arguments_.failsOnMissing) refuseMissingPictures(widget);
            KeptPictures& kept = KeptPictures::ofThisThread();
            answer.picture = widget.encode(request.options.format, kept.before(name, options));
            kept.trim();
            answer.size = widget.pictureSize(request.options.format);
            answer.validUntil = widget.validUntil();
            if (request.options.hashes) answer.sha256 = sha256(answer.picture);
        } catch (...) {
            const Source none;
            answer.failure = describe(std::current_exception(), document ? document->source() : none, model.get());
        }
    }

    const StreamArguments& arguments_;
    KeptDocuments documents_;
    KeptPairings pairings_;
};

/// Writes a file, whole or not at all. As it is one of many that can be made again, it is not synced, unless something
/// else than a file stands there.
void writePictureFile(const std::string& output, const std::string& picture) {
    std::error_code error;
    const auto kind = std::filesystem::symlink_status(output, error).type();
    if (kind != std::filesystem::file_type::regular && kind != std::filesystem::file_type::not_found)
        return writeFile(output, picture);
    StreamedFile file(output);
    file.write(picture);
    file.commit();
}

/// Writes the picture where it goes to a file, and answers.
void deliver(StreamAnswer& answer) {
    try {
        if (answer.output && !answer.failure) writePictureFile(*answer.output, answer.picture);
    } catch (const IOError&) {
        answer.failure = describe(std::current_exception());
    }
    writeStandardOutput(answerText(answer));
}

}  // namespace

int run(const StreamArguments& arguments) {
    ModelLines lines("-");
    StreamRenderer renderer(arguments);
    int status = 0;
    inOrder<ModelLine, StreamAnswer>([&] { return lines.next(); }, [&] { return lines.isReady(); },
                                     [&](const ModelLine& line) { return renderer.draw(line); },
                                     [&](StreamAnswer answer) {
                                         deliver(answer);
                                         if (answer.failure) status = 1;
                                     });
    return status;
}

}  // namespace tavrin::cli
