// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tavrin {

/// Goes through a text by the characters that readers see: extended grapheme clusters (Unicode Standard Annex 29), so
/// that a letter with its accents, CR LF and an emoji of several parts are one each. What is no UTF-8 counts as U+FFFD.
/// Linear in the text; ASCII without CR LF is not looked into.
///
///     for (GraphemeWalk walk(text); walk.next();) use(walk.character());
class GraphemeWalk {
public:
    explicit GraphemeWalk(std::string_view text);

    /// Goes to the next character; false after the last.
    bool next();
    [[nodiscard]] std::string_view character() const { return text_.substr(begin_, end_ - begin_); }
    /// Where the character begins, in bytes.
    [[nodiscard]] std::size_t offset() const { return begin_; }

private:
    void lookAhead();

    std::string_view text_;
    bool isPlain_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    std::vector<std::size_t> ends_;  // of the characters that are known
    std::size_t nextEnd_ = 0;
};

}  // namespace tavrin
