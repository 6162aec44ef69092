// SPDX-License-Identifier: MIT
#include "cli/project/operands.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "cli/io_error.h"
#include "cli/project/widget_files.h"
#include "cli/usage_error.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

/// "examples/agenda.json" for "examples/agenda/document.json".
std::string nameOfFound(const fs::path& document) {
    if (document.filename() != "document.json") return document.string();
    std::error_code error;
    const fs::path folder = document.parent_path().lexically_normal();
    const bool hasName = folder.has_filename() && folder != "." && folder.filename() != "..";
    return (hasName ? folder : fs::weakly_canonical(folder, error)).string() + ".json";
}

void addFolder(std::vector<Operand>& operands, const std::string& folder) {
    const std::vector<fs::path> documents = documentsIn(folder);
    if (documents.empty())
        throw IOError("there is no document in '" + folder + "': no JSON file with nodes", fs::path(folder));
    for (const fs::path& document : documents) operands.push_back({document.string(), nameOfFound(document)});
}

}  // namespace

std::vector<Operand> expandedOperands(const std::vector<std::string>& words) {
    std::vector<Operand> operands;
    std::optional<std::string> leftOut;
    for (const std::string& word : words) {
        std::error_code error;
        if (word != "-" && fs::is_directory(word, error)) {
            addFolder(operands, word);
        } else if (const auto document = word == "-" ? std::nullopt : documentOfModel(word)) {
            leftOut = "'" + word + "' is the model of '" + document->string() + "'; give that";
        } else {
            operands.push_back({word, word});
        }
    }
    if (operands.empty() && leftOut) throw UsageError(*leftOut);
    return operands;
}

}  // namespace tavrin::cli
