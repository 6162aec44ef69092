// SPDX-License-Identifier: MIT
#pragma once

#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/enumerators.h"

namespace tavrin {

/// The options that every door to the library has: the program, the C interface, the bindings of other languages.
enum class OptionName : unsigned char {
    family,
    size,
    screen,
    scale,
    appearance,
    date,
    timeZone,
    background,
    rounded,
    imageCacheDir,
    maxImageSize,
    fetch,
    fontDir,
    format,
    compression,
    quality,
    hashes,
    budget,
    budgetSteps,
    budgetPixels,
    budgetBytes,
    budgetSeconds,
};

/// How doors spell an option's name.
enum class Spelling : unsigned char {
    camel,  ///< timeZone
    snake,  ///< time_zone
    kebab,  ///< --time-zone
};

/// What an option takes. In brackets what doors without types of their own write.
enum class OptionKind : unsigned char {
    word,      ///< one of its words
    flag,      ///< yes or no ("1", "0", "true", "false")
    number,    ///< a number in its range
    count,     ///< a whole number in its range
    size,      ///< a width and a height, in points ("338x158")
    moment,    ///< a date and time (RFC 3339)
    timeZone,  ///< the name of a zone
    color,     ///< a background: six hexadecimal digits, with or without "#", "none" or "auto"
    folder,    ///< the path of a folder
};

/// What an option says something about.
enum class OptionUse : unsigned char {
    widget,   ///< how a document becomes a widget
    picture,  ///< how a widget's picture is written
    answer,   ///< what else an answer holds
};

/// An option as all doors describe it.
struct Option {
    OptionName name = {};
    OptionUse use = {};
    OptionKind kind = {};
    /// One sentence without its full stop.
    std::string_view sentence;
    /// What holds where it is not given, as text; empty where that is nothing, or depends on the door.
    std::string_view usual = {};
    std::span<const std::string_view> words = {};
    /// The range of a number or count. The lower end of a number is not in it.
    double least = 0;
    double most = std::numeric_limits<double>::infinity();
};

/// All of them, in the order of `OptionName`. This is the one place that knows them: doors, and the pages about doors,
/// are made from it or checked against it.
[[nodiscard]] std::span<const Option> sharedOptions();
[[nodiscard]] const Option& describe(OptionName name);

[[nodiscard]] std::string spelled(OptionName name, Spelling spelling);
/// The option that is spelled so; throws `OptionError` for none.
[[nodiscard]] OptionName optionSpelled(std::string_view word, Spelling spelling);

/// The option that a member of a budget's object stands for: `profile`, `steps`, `pixels`, `bytes` or `seconds`. Throws
/// `OptionError` for any other.
[[nodiscard]] OptionName budgetMember(std::string_view member);

/// What it takes, in words: "a number above 0 and up to 100".
[[nodiscard]] std::string wantedBy(const Option& option);

/// All options as a JSON array: `name` (in camel case), `use`, `kind`, `sentence`, and where it has them `default`,
/// `words`, `minimum` and `maximum`.
[[nodiscard]] std::string sharedOptionsJSON();

}  // namespace tavrin
