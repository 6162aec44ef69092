// SPDX-License-Identifier: MIT
#include "cli/destination.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <system_error>

#include "cli/options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/foundation/strings/ascii.h"

namespace tavrin::cli {
namespace {

std::string suffixOf(PictureFormat format) { return "." + std::string(name(format)); }

PictureFormat readFormat(const std::string& word) {
    const auto isOneOf = [&word](const auto& words) { return std::ranges::count(words, word) > 0; };
    if (isOneOf(frameFormatWords) && !isOneOf(enumeratorNames<PictureFormat>))
        throw UsageError("--format " + word + " is for animations: say which moments with --frames");
    return enumerators<PictureFormat>[readWord("--format", word, enumeratorNames<PictureFormat>)];
}

Destination fileOrFolder(const std::string& output, std::optional<PictureFormat> format) {
    const std::filesystem::path path = output;
    const std::optional<PictureFormat> named = formatOf(path);
    if (named && format && *named != *format)
        throw UsageError("--format " + suffixOf(*format).substr(1) + " contradicts the suffix of '" + output + "'");
    if (named) return {Destination::Kind::file, path, *named};
    if (namesFolder(path)) return {Destination::Kind::folder, path, format.value_or(PictureFormat::png)};
    if (format) return {Destination::Kind::file, path, *format};
    if (!animationWord(path).empty())
        throw UsageError("'" + output + "' is an animation: say which moments with --frames");
    throw UsageError("--output takes a name that ends in .png, .svg, .pdf, .webp or .jpg, or --format says what '" +
                     output + "' is; the name of a new folder ends in /");
}

Destination folderForSeveral(const std::string* output, std::optional<PictureFormat> format) {
    const std::filesystem::path path = output ? *output : "";
    if (output && *output == "-") throw UsageError("several pictures cannot go to standard output");
    if (formatOf(path) && !namesFolder(path))
        throw UsageError("several pictures cannot go to one file; give a folder instead of '" + *output + "'");
    return {Destination::Kind::folder, path, format.value_or(PictureFormat::png)};
}

void checkNoneOverwritten(const std::vector<std::string>& documents, const Destination& destination) {
    std::map<std::filesystem::path, std::string> documentsByPath;
    for (const std::string& document : documents) {
        const auto [other, isNew] = documentsByPath.emplace(destination.pathFor(document), document);
        if (!isNew)
            throw UsageError("'" + other->second + "' and '" + document + "' would both be drawn to '" +
                             other->first.string() + "'");
    }
}

}  // namespace

std::string stemOf(const std::string& document) {
    return document == "-" ? "stdin" : std::filesystem::path(document).stem().string();
}

std::string lowercaseSuffix(const std::filesystem::path& path) {
    std::string suffix = path.extension().string();
    std::ranges::transform(suffix, suffix.begin(), lowerCase);
    return suffix;
}

std::optional<PictureFormat> formatOf(const std::filesystem::path& path) {
    const std::string suffix = lowercaseSuffix(path);
    if (suffix == ".jpg") return PictureFormat::jpeg;
    for (const PictureFormat format : enumerators<PictureFormat>)
        if (suffix == suffixOf(format)) return format;
    return std::nullopt;
}

bool namesFolder(const std::filesystem::path& path) {
    std::error_code error;
    return !path.has_filename() || std::filesystem::is_directory(path, error);
}

std::string_view animationWord(const std::filesystem::path& path) {
    const std::string suffix = lowercaseSuffix(path);
    for (const std::string_view word : frameFormatWords)
        if (suffix == "." + std::string(word)) return word;
    return {};
}

std::filesystem::path Destination::pathFor(const std::string& document) const {
    if (kind != Kind::folder) return path;
    return path / (stemOf(document) + suffixOf(format));
}

Destination readDestination(const std::vector<std::string>& documents, const std::string* output,
                            const std::string* format) {
    std::optional<PictureFormat> chosen;
    if (format) chosen = readFormat(*format);
    if (output && output->empty()) throw UsageError("--output takes the name of a file or a folder, not ''");
    if (documents.size() > 1) {
        Destination destination = folderForSeveral(output, chosen);
        checkNoneOverwritten(documents, destination);
        return destination;
    }
    if (!output) return {Destination::Kind::folder, {}, chosen.value_or(PictureFormat::png)};
    if (*output == "-") return {Destination::Kind::standardOutput, {}, chosen.value_or(PictureFormat::png)};
    return fileOrFolder(*output, chosen);
}

}  // namespace tavrin::cli
