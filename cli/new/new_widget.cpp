// SPDX-License-Identifier: MIT
#include "cli/new/new_widget.h"

#include <system_error>

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

namespace {

/// Folders that are made where they are missing, and removed again unless they are kept.
class NewFolders {
public:
    NewFolders() = default;
    NewFolders(const NewFolders&) = delete;
    NewFolders& operator=(const NewFolders&) = delete;
    ~NewFolders() {
        std::error_code ignored;  // others may have put something in
        for (; !made_.empty(); made_.pop_back()) fs::remove(made_.back(), ignored);
    }

    void make(const fs::path& folder) {
        std::error_code error;
        if (folder.empty() || fs::exists(folder, error)) return;
        make(folder.parent_path());
        makeFolder(folder);
        made_.push_back(folder);
    }
    void keep() { made_.clear(); }

private:
    std::vector<fs::path> made_;
};

}  // namespace

void createFiles(const std::vector<NewFile>& files) {
    NewFolders folders;
    FileTransaction transaction;
    for (const NewFile& file : files) {
        folders.make(file.path.parent_path());
        transaction.create(file.path, file.text);
    }
    transaction.commit();
    folders.keep();
}

}  // namespace tavrin::cli
