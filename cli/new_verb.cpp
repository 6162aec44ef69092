// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "cli/new/new_widget.h"
#include "cli/output.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#include "tavrin/doors/words.h"

namespace tavrin::cli {
namespace {

std::string listText() {
    std::string text;
    for (const WidgetTemplate& each : widgetTemplates()) text += fmt::format("{:<11} {}\n", each.name, each.summary);
    return text;
}

const WidgetTemplate& templateOf(const Command& command) {
    const std::string* const wanted = command.find("--template");
    if (!wanted) return widgetTemplates().front();
    if (const WidgetTemplate* const found = findTemplate(*wanted)) return *found;
    std::vector<std::string_view> names;
    for (const WidgetTemplate& each : widgetTemplates()) names.push_back(each.name);
    const std::string meant = suggestion(*wanted, names);
    throw UsageError("--template takes " + listed(names) + ", not '" + *wanted + "'" + meant);
}

}  // namespace

void makeNew(const Command& command) {
    if (command.find("--list")) {
        if (!command.operands.empty() || command.find("--template"))
            throw UsageError("--list shows the templates, and takes nothing else");
        return writeStandardOutput(listText());
    }
    if (command.operands.size() != 1)
        throw UsageError("what is it called? `tavrin new NAME` makes NAME.json, and takes one name");
    const WidgetTemplate& made = templateOf(command);
    const std::vector<NewFile> files = filesOfNew(stemOfNew(command.operands.front()), made);
    createFiles(files);
    std::string told;
    for (const NewFile& file : files) told += "made " + file.path.string() + "\n";
    writeStandardOutput(told);
}

}  // namespace tavrin::cli
