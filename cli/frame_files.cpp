// SPDX-License-Identifier: MIT
#include "cli/frame_files.h"

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

#include "cli/io_error.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::cli {
namespace {

/// All numbered frames of one span wait in memory until the last is drawn.
constexpr std::uint64_t maximumFileBytes = 0x7FFFFFFF;

void drawPictures(AnimationRenderer& renderer, const FrameSpan& span, Outcome& outcome,
                  const std::function<void()>& advance) {
    std::shared_ptr<const PixelBuffer> last;
    std::uint64_t bytes = 0;
    renderer.draw(span, [&](const std::shared_ptr<const PixelBuffer>& picture) {
        if (picture == std::exchange(last, picture)) {
            outcome.frames.push_back(outcome.frames.back());
        } else {
            outcome.frames.push_back(std::make_shared<const std::string>(renderer.png(*picture)));
            bytes += outcome.frames.back()->size();
        }
        if (bytes > maximumFileBytes)
            throw TavrinError("Render", "the frames take more than " + std::to_string(maximumFileBytes) + " bytes");
        advance();
    });
}

}  // namespace

void drawFrames(const Frames& frames, const Production& work) {
    Progress progress(frames.span.count());
    const auto advance = [&] { progress.advance(work.source.name); };
    AnimationRenderer renderer = work.document.animation(work.options);
    if (frames.kind == Frames::Kind::numberedFiles) return drawPictures(renderer, frames.span, work.outcome, advance);
    work.outcome.bytes =
        renderer.encode(frames.span, {frames.format, frames.framesPerSecond, [&](std::size_t) { advance(); }});
}

void checkFrameFolder(const Frames& frames) {
    const std::filesystem::path folder = frames.path.parent_path();
    std::error_code error;
    const bool isOther = std::filesystem::exists(folder, error) && !std::filesystem::is_directory(folder, error);
    if (frames.kind == Frames::Kind::numberedFiles && isOther)
        throw IOError("cannot write into '" + folder.string() + "'", ENOTDIR, folder);
}

void writeFrames(const Frames& frames, const Outcome& outcome) {
    if (frames.kind == Frames::Kind::standardOutput) return writeStandardOutput(outcome.bytes);
    const std::filesystem::path folder = frames.path.parent_path();
    if (frames.kind == Frames::Kind::file) return writeFile(frames.path, outcome.bytes);
    if (!folder.empty()) makeFolder(folder);
    FileTransaction files;
    for (std::size_t i = 0; i < outcome.frames.size(); ++i) files.write(frames.pathOf(i + 1), *outcome.frames[i]);
    files.commit();
}

}  // namespace tavrin::cli
