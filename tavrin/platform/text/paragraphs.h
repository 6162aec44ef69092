// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin::text {

/// A paragraph of a text: what stands between two line breaks.
struct Paragraph {
    std::u32string characters;
    /// The same in valid UTF-8.
    std::string utf8;
};

/// Splits a text into paragraphs at line breaks (LF, CR LF, CR, VT, FF, NEL, U+2028, U+2029). Even an empty text is one
/// paragraph. Invalid UTF-8 becomes U+FFFD; control characters become U+2060, which is never seen and never breaks.
class ParagraphReader {
public:
    explicit ParagraphReader(std::string_view text) : rest_(text) {}

    /// Reads the next paragraph into `paragraph`; false at the end.
    bool next(Paragraph& paragraph);

private:
    char32_t take();
    void takeAscii(Paragraph& paragraph);

    std::string_view rest_;
    bool atEnd_ = false;
};

}  // namespace tavrin::text
