#include "cli/snapshot/snapshot_options.h"

#include "cli/usage_error.h"
#include "tavrin/platform/foundation/number_text.h"

namespace tavrin::cli {
namespace {

const std::string* find(const Command& command, std::string_view option) {
    const auto found = command.values.find(option);
    return found == command.values.end() ? nullptr : &found->second;
}

int readTolerance(const std::string& text) {
    const auto tolerance = intFromText<int>(text);
    if (!tolerance || *tolerance < 0 || *tolerance > 255)
        throw UsageError("--tolerance takes a whole number from 0 to 255, not '" + text + "'");
    return *tolerance;
}

}  // namespace

SnapshotOptions readSnapshotOptions(const Command& command) {
    const std::string* const folder = find(command, "--dir");
    if (!folder || folder->empty()) throw UsageError("where are they? `tavrin snapshot` wants --dir DIR");
    const std::string* const failures = find(command, "--output");
    SnapshotOptions options;
    options.folder = *folder;
    options.failures = failures ? std::filesystem::path(*failures) : options.folder / "failures";
    options.updates = find(command, "--update") != nullptr;
    options.isStrict = find(command, "--strict") != nullptr;
    if (options.updates && options.isStrict)
        throw UsageError("--update records what --strict refuses; give one of them");
    if (const std::string* tolerance = find(command, "--tolerance")) options.tolerance = readTolerance(*tolerance);
    return options;
}

}  // namespace tavrin::cli
