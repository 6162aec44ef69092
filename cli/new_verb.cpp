// SPDX-License-Identifier: MIT
#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "cli/io_error.h"
#include "cli/new/widget_template.h"
#include "cli/output.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#include "tavrin/doors/words.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

std::string listText() {
    std::string text;
    for (const WidgetTemplate& each : widgetTemplates()) text += fmt::format("{:<11} {}\n", each.name, each.summary);
    return text;
}

const WidgetTemplate& templateOf(const Command& command) {
    const std::string* const wanted = command.find("--template");
    if (!wanted) return widgetTemplates().front();
    std::vector<std::string_view> names;
    for (const WidgetTemplate& each : widgetTemplates()) {
        if (each.name == *wanted) return each;
        names.push_back(each.name);
    }
    const std::string meant = suggestion(*wanted, names);
    throw UsageError("--template takes " + listed(names) + ", not '" + *wanted + "'" + meant);
}

/// The path of a new widget without an ending: "widgets/habits", also where it is given as "widgets/habits.json".
fs::path stemOfNew(const std::string& name) {
    fs::path path = name;
    if (path.extension() == ".json") path.replace_extension();
    const std::string last = path.filename().string();
    if (last.empty() || last == "." || last == "..")
        throw UsageError("a widget has a name, such as widgets/habits, not '" + name + "'");
    if (last == "model" || last.ends_with(".model"))
        throw UsageError("a widget is not called '" + last + "', which would make it a model");
    if (last.ends_with(".schema")) throw UsageError("a widget is not called '" + last + "', as schemas are");
    return path;
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
    const std::string stem = stemOfNew(command.operands.front()).string();
    const std::pair<std::string, std::string_view> files[] = {
        {stem + ".json", made.document}, {stem + ".model.json", made.model}, {stem + ".widget.toml", made.settings}};
    for (const auto& [path, text] : files) {
        std::error_code error;
        if (fs::exists(fs::symlink_status(path, error)))
            throw IOError("'" + path + "' is there already, and is left as it is; give another name", fs::path(path));
    }
    if (const fs::path folder = fs::path(stem).parent_path(); !folder.empty()) makeFolder(folder);
    FileTransaction transaction;
    for (const auto& [path, text] : files) transaction.write(path, text);
    transaction.commit();
    std::string told;
    for (const auto& [path, text] : files) told += "made " + path + "\n";
    writeStandardOutput(told);
}

}  // namespace tavrin::cli
