// SPDX-License-Identifier: MIT
#include "cli/failure_text.h"

#include <algorithm>
#include <string_view>

namespace tavrin::cli {
namespace {

constexpr std::string_view bold = "\x1b[1m";
constexpr std::string_view green = "\x1b[1;32m";
constexpr std::string_view plain = "\x1b[0m";

std::string painted(const std::string& text, std::string_view color, bool colored) {
    return colored ? std::string(color) + text + std::string(plain) : text;
}

/// "weather.json:12:8", or the program's name where no text is at fault.
std::string location(const Failure& failure) {
    if (failure.file.empty() || failure.type == "IOError") return "tavrin";  // whose message names the file
    std::string text = printable(failure.file);
    if (failure.place) text += ":" + std::to_string(failure.place->line) + ":" + std::to_string(failure.place->column);
    return text;
}

std::string message(const Failure& failure) {
    const bool showsKind = failure.type == "TavrinError";
    return (showsKind ? printable(failure.kind) + ": " : "") + printable(failure.message);
}

std::string excerptText(std::size_t line, const Excerpt& excerpt, bool colored) {
    const std::string number = std::to_string(line);
    const std::string margin(number.size() < 5 ? 5 - number.size() : 0, ' ');
    const std::string mark = excerpt.mark.substr(0, excerpt.mark.size() - 1);
    return margin + number + " | " + excerpt.line + "\n" +                      //
           std::string(std::max<std::size_t>(5, number.size()), ' ') + " | " +  //
           mark + painted("^", green, colored) + "\n";
}

/// A way of very many steps without those in its middle.
std::string shortened(const CodingPath& path) {
    constexpr std::size_t longest = 160;
    constexpr std::ptrdiff_t keptSteps = 6;
    std::string text = tavrin::toText(path);
    if (text.size() <= longest || path.size() <= 2 * keptSteps) return text;
    return tavrin::toText({path.begin(), path.begin() + keptSteps}) + "…" +
           tavrin::toText({path.end() - keptSteps, path.end()});
}

/// The first of some snapshots, each in a line.
std::string seenInText(const std::vector<SeenDifference>& seen) {
    constexpr std::size_t mostNamed = 20;
    std::string lines;
    for (std::size_t i = 0; i < seen.size() && i < mostNamed; ++i)
        lines += "      in " + printable(seen[i].snapshot) + ": " + seen[i].how + "\n";
    if (seen.size() > mostNamed) lines += "      in " + std::to_string(seen.size() - mostNamed) + " more\n";
    return lines;
}

}  // namespace

Label labelOf(const Diagnostic& diagnostic) {
    constexpr std::string_view red = "\x1b[1;31m";
    constexpr std::string_view magenta = "\x1b[1;35m";
    constexpr std::string_view cyan = "\x1b[1;36m";
    constexpr EnumeratorTable<Severity, std::string_view> colors{
        {{Severity::error, red}, {Severity::warning, magenta}, {Severity::note, cyan}}};
    return {name(diagnostic.severity), colors[diagnostic.severity], diagnostic.code};
}

std::string placedMessage(const Failure& failure) {
    if (failure.file.empty() || !failure.place) return failure.message;
    return failure.file + ":" + std::to_string(failure.place->line) + ":" + std::to_string(failure.place->column) +
           ": " + failure.message;
}

std::string failureText(const Failure& failure, bool colored, const Label& label) {
    const std::string code = label.code.empty() ? "" : " [" + std::string(label.code) + "]";
    std::string text = painted(location(failure) + ":", bold, colored) + " " +
                       painted(std::string(label.word) + ":", label.color, colored) + " " + message(failure) + code +
                       "\n";
    if (failure.excerpt) text += excerptText(failure.place->line, *failure.excerpt, colored);
    if (failure.codingPath && !failure.codingPath->empty())
        text += "      at " + printable(shortened(*failure.codingPath)) + "\n";
    return text + seenInText(failure.seenIn);
}

}  // namespace tavrin::cli
