// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "cli/file_descriptor.h"
#include "cli/input.h"

namespace tavrin::cli {

/// A model that is one line of a file.
struct ModelLine {
    Source source;  ///< where in the file it stands, and the line
    /// The line was longer than `ModelLines::maximumLineBytes`; of its text nothing is kept.
    bool isTooLong = false;
};

/// Models from a file of JSON Lines, a pipe or standard input, read as they are asked for. Lines of nothing but blanks
/// are left out, but counted.
class ModelLines {
public:
    static constexpr std::size_t maximumLineBytes = std::size_t{16} << 20;
    /// A block is no longer than that, in lines, but for its last one in bytes.
    static constexpr std::size_t blockLines = 16;
    static constexpr std::size_t blockBytes = std::size_t{64} << 10;

    /// Throws `IOError` for a file that cannot be read.
    explicit ModelLines(std::string path);

    /// The next line; none at the end. Throws `IOError`.
    [[nodiscard]] std::optional<ModelLine> next();
    /// The next lines, at least one: those that are there without waiting. None at the end. Throws `IOError`.
    [[nodiscard]] std::optional<std::vector<ModelLine>> nextBlock();
    /// Whether something can be read without waiting for whoever writes.
    [[nodiscard]] bool isReady() const;

private:
    [[nodiscard]] bool findsLineEnd();
    [[nodiscard]] bool readMore();

    std::string path_;
    FileDescriptor file_;
    std::string text_;  // read and not handed out, from `begin_` on
    std::size_t begin_ = 0;
    std::size_t searched_ = 0;  // no line ends between `begin_` and there
    std::size_t lineNumber_ = 0;
    bool isTooLong_ = false;  // the line that `begin_` stands in
    bool isOver_ = false;
};

}  // namespace tavrin::cli
