// SPDX-License-Identifier: MIT
#include "cli/progress.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>

#include "cli/excerpt.h"
#include "cli/file_descriptor.h"
#include "cli/terminal.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin::cli {
namespace {

constexpr std::size_t barColumns = 20;
constexpr std::size_t maximumSteps = 1000;

}  // namespace

Progress::Progress(std::size_t total) : total_(total), isOn_(total > 1 && standardErrorIsTerminal()) {}

void Progress::advance(const std::string& name) {
    ++done_;
    if (!isOn_) return;
    const std::size_t step = std::min(done_, done_ * maximumSteps / total_);
    if (step == shownStep_ && isShown_) return;  // of very many things not each is shown
    shownStep_ = step;
    const std::size_t filled = done_ * barColumns / total_;
    const std::string bar = "[" + std::string(filled, '#') + std::string(barColumns - filled, '-') + "]";
    const std::string text = bar + " " + std::to_string(done_) + "/" + std::to_string(total_) + " " + printable(name);
    const std::string line = text.substr(0, skipCodePoints(text, 0, standardErrorColumns() - 1));
    isShown_ = writeAll(STDERR_FILENO, "\r\x1b[K" + line);
}

void Progress::hide() {
    if (isShown_) isShown_ = !writeAll(STDERR_FILENO, "\r\x1b[K");
}

}  // namespace tavrin::cli
