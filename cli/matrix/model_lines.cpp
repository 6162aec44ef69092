// SPDX-License-Identifier: MIT
#include "cli/matrix/model_lines.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>
#include <utility>

#include <poll.h>

#include "cli/io_error.h"

namespace tavrin::cli {
namespace {

constexpr std::size_t readBytes = std::size_t{64} << 10;

FileDescriptor openLines(const std::string& path) {
    return FileDescriptor(path == "-" ? ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                      : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
}

[[noreturn]] void failToRead(const std::string& path) {
    const int code = errno;
    throw IOError("cannot read " + (path == "-" ? std::string("standard input") : "'" + path + "'"), code,
                  displayName(path));
}

}  // namespace

ModelLines::ModelLines(std::string path) : path_(std::move(path)), file_(openLines(path_)) {
    if (!file_.isOpen()) failToRead(path_);
}

bool ModelLines::isReady() const {
    if (isOver_ || text_.find('\n', searched_) != std::string::npos) return true;
    pollfd waiting{file_.number(), POLLIN, 0};
    return ::poll(&waiting, 1, 0) != 0;
}

std::optional<std::vector<ModelLine>> ModelLines::nextBlock() {
    std::vector<ModelLine> block;
    std::size_t bytes = 0;
    while (block.size() < blockLines && bytes < blockBytes && (block.empty() || isReady())) {
        std::optional<ModelLine> line = next();
        if (!line) break;
        bytes += line->source.text.size();
        block.push_back(*std::move(line));
    }
    if (block.empty()) return std::nullopt;
    return block;
}

std::optional<ModelLine> ModelLines::next() {
    for (;;) {
        const bool isWhole = findsLineEnd();
        if (!isWhole) {
            if (searched_ - begin_ > maximumLineBytes) isTooLong_ = true;
            if (isTooLong_) begin_ = searched_;
            if (!isOver_ && readMore()) continue;
            if (begin_ == text_.size() && !isTooLong_) return std::nullopt;  // else the last line has no end
        }
        const std::string_view text = std::string_view(text_).substr(begin_, searched_ - begin_);
        if (isWhole) ++searched_;
        begin_ = searched_;
        ++lineNumber_;
        const bool isTooLong = std::exchange(isTooLong_, false) || text.size() > maximumLineBytes;
        if (!isTooLong && text.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        return ModelLine{{displayName(path_), std::string(isTooLong ? std::string_view() : text), lineNumber_},
                         isTooLong};
    }
}

/// Looks for the end of the line that begins at `begin_`; `searched_` stands there then, or at the end of the text.
bool ModelLines::findsLineEnd() {
    const std::size_t end = text_.find('\n', searched_);
    searched_ = end == std::string::npos ? text_.size() : end;
    return end != std::string::npos;
}

/// Reads on; false at the end.
bool ModelLines::readMore() {
    text_.erase(0, begin_);
    searched_ -= std::exchange(begin_, 0);
    const std::size_t size = text_.size();
    text_.resize(size + readBytes);
    ssize_t count = 0;
    do count = ::read(file_.number(), text_.data() + size, readBytes);
    while (count < 0 && errno == EINTR);
    if (count < 0) failToRead(path_);
    text_.resize(size + static_cast<std::size_t>(count));
    isOver_ = count == 0;
    return !isOver_;
}

}  // namespace tavrin::cli
