// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot_options.h"

#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

int readTolerance(const std::string& text) {
    const auto tolerance = intFromText<int>(text);
    if (!tolerance || *tolerance < 0 || *tolerance > 255)
        throw UsageError("--tolerance takes a whole number from 0 to 255, not '" + text + "'");
    return *tolerance;
}

}  // namespace

SnapshotOptions readSnapshotOptions(const Command& command) {
    const std::string* const folder = command.find("--dir");
    if (!folder || folder->empty()) throw UsageError("where are they? `tavrin snapshot` wants --dir DIR");
    const std::string* const failures = command.find("--output");
    SnapshotOptions options;
    options.folder = *folder;
    options.failures = failures ? std::filesystem::path(*failures) : options.folder / "failures";
    options.updates = command.find("--update") != nullptr;
    options.isStrict = command.find("--strict") != nullptr;
    if (options.updates && options.isStrict)
        throw UsageError("--update records what --strict refuses; give one of them");
    if (const std::string* format = command.find("--format"))
        options.format = static_cast<SnapshotFormat>(readWord("--format", *format, snapshotFormatWords));
    if (const std::string* tolerance = command.find("--tolerance")) options.tolerance = readTolerance(*tolerance);
    return options;
}

}  // namespace tavrin::cli
