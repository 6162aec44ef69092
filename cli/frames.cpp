// SPDX-License-Identifier: MIT
#include "cli/frames.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <tuple>

#include "cli/destination.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::cli {
namespace {

using std::filesystem::path;

using NumberPlace = Frames::NumberPlace;

/// The first "%d" or "%04d" in a name, from a place on.
std::optional<NumberPlace> nextNumberPlace(std::string_view name, std::size_t from) {
    for (std::size_t begin = name.find('%', from); begin != std::string_view::npos; begin = name.find('%', begin + 1)) {
        std::string_view rest = name.substr(begin + 1);
        const bool isPadded = rest.size() > 1 && rest[0] == '0' && rest[1] >= '1' && rest[1] <= '9';
        const std::size_t digits = isPadded ? static_cast<std::size_t>(rest[1] - '0') : 1;
        if (isPadded) rest.remove_prefix(2);
        if (rest.starts_with('d')) return NumberPlace{begin, begin + (isPadded ? 4 : 2), digits};
    }
    return std::nullopt;
}

std::optional<NumberPlace> numberPlace(std::string_view name) {
    const auto place = nextNumberPlace(name, 0);
    if (place && nextNumberPlace(name, place->end))
        throw UsageError("'" + std::string(name) + "' has two places for a frame's number");
    return place;
}

/// Refuses what looks like a place for a number and is none: "%s", "%5d".
void checkNoOtherPlace(const std::string& name) {
    for (std::size_t percent = name.find('%'); percent != std::string::npos; percent = name.find('%', percent + 1)) {
        const std::size_t at = std::min(name.find_first_not_of("0123456789", percent + 1), name.size() - 1);
        const bool isConversion = std::string_view("diuxXoscn").find(name[at]) != std::string_view::npos;
        const bool endsThere = at + 1 == name.size() || !std::isalnum(static_cast<unsigned char>(name[at + 1]));
        if (isConversion && endsThere && at > percent)
            throw UsageError("a frame's number is written %d or, with zeros in front, %04d, not '" +
                             name.substr(percent, at - percent + 1) + "' as in '" + name + "'");
    }
}

AnimationFormat animationFormat(std::string_view word) {
    return word == "webp" ? AnimationFormat::webp : AnimationFormat::png;
}

/// Frames in a folder, under the document's name.
void placeInFolder(Frames& frames, const std::string& stem, std::string_view word) {
    constexpr std::string_view pattern = "-%04d";
    if (!word.empty() && word != "png") {
        frames.path /= stem + "." + std::string(word);
        return;
    }
    frames.kind = Frames::Kind::numberedFiles;
    frames.path /= stem + std::string(pattern) + ".png";
    frames.number = {stem.size() + 1, stem.size() + pattern.size(), 4};
}

/// Judges where frames go. `word` is the value of `--format`, empty where it is not given.
void placeFrames(Frames& frames, const std::string& stem, const std::string& output, std::string_view word) {
    const path file = output;
    const std::string_view named = animationWord(file);
    frames.path = file;
    frames.format = animationFormat(named.empty() ? word : named);
    if (namesFolder(file)) return placeInFolder(frames, stem, word);
    if (const auto place = numberPlace(file.filename().string())) {
        if (named != "png" || !(word.empty() || word == "png"))
            throw UsageError("numbered frames are PNGs; --output takes a name such as clock-%04d.png, not '" + output +
                             "'");
        frames.kind = Frames::Kind::numberedFiles;
        frames.number = *place;
        return;
    }
    checkNoOtherPlace(file.filename().string());
    if (!named.empty() && !word.empty() && animationFormat(word) != animationFormat(named))
        throw UsageError("--format " + std::string(word) + " contradicts the suffix of '" + output + "'");
    if (named.empty() && (word.empty() || formatOf(file)))
        throw UsageError(
            "--output takes, with --frames, a name that ends in .webp, .png or .apng, a folder (a new one's name ends "
            "in /), or a name such as clock-%04d.png, not '" +
            output + "'");
}

void readOutput(Frames& frames, const Command& command, const std::string& document) {
    std::string_view word;
    if (const std::string* format = command.find("--format"))
        word = frameFormatWords[readWord("--format", *format, frameFormatWords)];
    const std::string stem = stemOf(document);
    const std::string* const output = command.find("--output");
    frames.format = animationFormat(word);
    if (!output) {
        frames.path = stem + "." + std::string(word.empty() ? "png" : word);
    } else if (*output == "-") {
        frames.kind = Frames::Kind::standardOutput;
    } else if (output->empty()) {
        throw UsageError("--output takes the name of a file or a folder, not ''");
    } else {
        placeFrames(frames, stem, *output, word);
    }
}

/// Refuses what does not go together.
void checkTogether(const Command& command, std::size_t documents) {
    for (const char* option : {"--every", "--fps"})
        if (!command.find("--frames") && command.find(option))
            throw UsageError(std::string(option) + " goes with --frames FROM..TO");
    if (!command.find("--frames")) return;
    if (documents > 1) throw UsageError("--frames draws one document, not " + std::to_string(documents));
    if (command.find("--date")) throw UsageError("--frames says which moments are drawn; leave --date away");
}

}  // namespace

path Frames::pathOf(std::size_t frame) const {
    std::string name = path.filename().string();
    std::string digits = std::to_string(frame);
    digits.insert(0, number.digits - std::min(number.digits, digits.size()), '0');
    return path.parent_path() / name.replace(number.begin, number.end - number.begin, digits);
}

std::pair<Date, Date> readMoments(std::string_view option, std::string_view value) {
    const std::size_t dots = std::min(value.find(".."), value.size());
    const auto first = Date::parseRFC3339(value.substr(0, dots));
    const auto last = Date::parseRFC3339(value.substr(std::min(dots + 2, value.size())));
    if (first && last && first->secondsSince1970 <= last->secondsSince1970) return {*first, *last};
    throw UsageError(std::string(option) +
                     " takes two moments such as 2026-03-01T09:41:00Z..2026-03-01T09:42:00Z, the earlier one first, "
                     "not '" +
                     std::string(value) + "'");
}

std::optional<Frames> readFrames(const Command& command, const std::vector<std::string>& documents) {
    checkTogether(command, documents.size());
    const std::string* const moments = command.find("--frames");
    if (!moments) return std::nullopt;
    Frames frames;
    std::tie(frames.span.first, frames.span.last) = readMoments("--frames", *moments);
    if (const std::string* every = command.find("--every")) frames.span.step = readSeconds("--every", *every);
    if (const std::string* rate = command.find("--fps")) frames.framesPerSecond = readUpTo100("--fps", *rate);
    try {
        static_cast<void>(frames.span.count());
    } catch (const TavrinError& error) {
        throw UsageError("--frames asks for " + error.message);
    }
    readOutput(frames, command, documents.front());
    if (frames.kind == Frames::Kind::numberedFiles && frames.framesPerSecond)
        throw UsageError("--fps is for animations; numbered PNGs are not shown by themselves");
    return frames;
}

}  // namespace tavrin::cli
