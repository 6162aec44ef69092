#include "cli/progress.h"

#include <string_view>
#include <unistd.h>

#include "cli/excerpt.h"
#include "cli/file_descriptor.h"
#include "cli/terminal.h"
#include "tavrin/platform/foundation/utf8.h"

namespace tavrin::cli {
namespace {

/// The first `columns` characters of a text.
std::string_view shortened(std::string_view text, std::size_t columns) {
    std::size_t end = 0;
    for (; columns > 0 && end < text.size(); --columns) end += decodeUtf8(text, end).length;
    return text.substr(0, end);
}

}  // namespace

Progress::Progress(std::size_t total) : total_(total), isOn_(total > 1 && standardErrorIsTerminal()) {}

void Progress::advance(const std::string& name) {
    ++done_;
    if (!isOn_) return;
    const std::string text = std::to_string(done_) + "/" + std::to_string(total_) + " " + printable(name);
    const std::string line = "\r\x1b[K" + std::string(shortened(text, standardErrorColumns() - 1));
    isShown_ = writeAll(STDERR_FILENO, line);
}

void Progress::hide() {
    if (isShown_) isShown_ = !writeAll(STDERR_FILENO, "\r\x1b[K");
}

}  // namespace tavrin::cli
