// SPDX-License-Identifier: MIT
#include <cerrno>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>

#include "cli/frame_files.h"
#include "cli/input.h"
#include "cli/io_error.h"
#include "cli/missing_pictures.h"
#include "cli/output.h"
#include "cli/production.h"
#include "cli/progress.h"
#include "cli/verbs.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

/// What can be said of all of them at once.
std::string reasonOf(const DocumentInput& input) {
    std::error_code error;
    if (input.imageCacheDir && !std::filesystem::is_directory(*input.imageCacheDir, error))
        return ", since there is no folder '" + input.imageCacheDir->string() + "'";
    if (!input.imageCacheDir && input.widget.fetchPolicy == FetchPolicy::none) return ", since nothing may be fetched";
    return "; `tavrin check` says which";
}

/// Notes how many of the pictures that a widget shows could not be had, where there are any.
void noteMissingPictures(Widget& widget, const DocumentInput& input, std::vector<std::string>& notes) {
    const std::size_t count = missingPictures(widget).size();
    if (count == 0) return;
    const std::string pictures = count == 1 ? "1 picture is" : std::to_string(count) + " pictures are";
    notes.push_back("warning: " + pictures + " missing" + reasonOf(input));
}

void draw(const RenderArguments& arguments, const Production& work) {
    if (!work.input.model) noteMissingModel(work.source, work.outcome.notes);
    if (arguments.frames) return drawFrames(*arguments.frames, work);
    Widget widget = work.document.widget(work.options);
    if (arguments.failsOnMissing) refuseMissingPictures(widget);
    work.outcome.bytes = widget.encode(arguments.destination.format);
    noteMissingPictures(widget, work.input, work.outcome.notes);
}

void write(const Destination& destination, const DocumentInput& document, const std::string& bytes) {
    if (destination.kind == Destination::Kind::standardOutput) return writeStandardOutput(bytes);
    if (destination.kind == Destination::Kind::folder && !destination.path.empty()) makeFolder(destination.path);
    writeFile(destination.pathFor(document.namedAs), bytes);
}

/// Finds out before anything is drawn that a folder cannot be one.
void checkFolder(const Destination& destination) {
    if (destination.kind != Destination::Kind::folder || destination.path.empty()) return;
    std::error_code error;
    if (std::filesystem::exists(destination.path, error) && !std::filesystem::is_directory(destination.path, error))
        throw IOError("cannot write into '" + destination.path.string() + "'", ENOTDIR, destination.path);
}

void write(const RenderArguments& arguments, const DocumentInput& document, const Outcome& outcome) {
    if (arguments.frames) return writeFrames(*arguments.frames, outcome);
    write(arguments.destination, document, outcome.bytes);
}

/// Writes a picture; what goes wrong becomes the document's failure.
void writePicture(const RenderArguments& arguments, const DocumentInput& document, Outcome& outcome) {
    if (outcome.failure) return;
    try {
        write(arguments, document, outcome);
    } catch (const IOError&) {
        outcome.failure = describe(std::current_exception());
    }
}

}  // namespace

int run(const RenderArguments& arguments, const Reporter& reporter) {
    if (arguments.frames)
        checkFrameFolder(*arguments.frames);
    else
        checkFolder(arguments.destination);
    int status = 0;
    Progress progress(arguments.documents.size());
    const auto make = [&](const Production& work) { draw(arguments, work); };
    produceAll(arguments, make, [&](const DocumentInput& document, Outcome outcome) {
        writePicture(arguments, document, outcome);
        if (outcome.failure || !outcome.notes.empty()) progress.hide();
        reporter.note(displayName(document.path), outcome.notes);
        if (outcome.failure) {
            reporter.report(*outcome.failure);
            status = 1;
        }
        progress.advance(document.path);
    });
    return status;
}

}  // namespace tavrin::cli
