// SPDX-License-Identifier: MIT
#include "cli/new/new_widget.h"

#include "cli/output.h"
#include "cli/usage_error.h"

namespace tavrin::cli {

namespace fs = std::filesystem;

std::string stemOfNew(const std::string& name) {
    fs::path path = name;
    if (path.extension() == ".json") path.replace_extension();
    const std::string last = path.filename().string();
    if (last.empty() || last == "." || last == "..")
        throw UsageError("a widget has a name, such as widgets/habits, not '" + name + "'");
    if (last == "model" || last.ends_with(".model"))
        throw UsageError("a widget is not called '" + last + "', which would make it a model");
    if (last.ends_with(".schema")) throw UsageError("a widget is not called '" + last + "', as schemas are");
    return path.string();
}

std::vector<NewFile> filesOfNew(const std::string& stem, const WidgetTemplate& begun) {
    return {
        {stem + ".json", begun.document}, {stem + ".model.json", begun.model}, {stem + ".widget.toml", begun.settings}};
}

void createFiles(const std::vector<NewFile>& files) {
    FileTransaction transaction;
    for (const NewFile& file : files) {
        if (const fs::path folder = file.path.parent_path(); !folder.empty()) makeFolder(folder);
        transaction.create(file.path, file.text);
    }
    transaction.commit();
}

}  // namespace tavrin::cli
