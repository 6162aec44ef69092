// SPDX-License-Identifier: MIT
#include "cli/preview/project_messages.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

#include "cli/preview/folder_error.h"
#include "cli/project/widget_files.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin::cli {
namespace {

void writeScreen(JSONWriter& writer, Size screen) {
    const std::string name =
        tavrin::toText(static_cast<int>(screen.width)) + "x" + tavrin::toText(static_cast<int>(screen.height));
    writer.beginObject().key("name").value(name).key("families").beginArray();
    for (const WidgetFamily family : enumerators<WidgetFamily>) {
        const auto size = widgetSize(family, screen);
        if (!size) continue;
        writer.beginObject().key("name").value(tavrin::name(family));
        writer.key("width").value(size->width).key("height").value(size->height).endObject();
    }
    writer.endArray().endObject();
}

std::string kindOf(const ProjectFolder& folder, const ProjectFile& file) {
    try {
        return looksLikeDocument(folder.read(file.path).text) ? "document" : "model";
    } catch (const FolderError&) {
        return "model";  // too large to be edited, or gone meanwhile
    }
}

}  // namespace

std::string projectMessage(const ProjectFolder& folder) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("name").value(folder.root().filename().string());
    writer.key("version").value(TAVRIN_VERSION).key("timeZone").value(TimeZone::current().identifier());
    writer.key("screens").beginArray();
    for (const Size screen : knownScreens()) writeScreen(writer, screen);
    writer.endArray().endObject();
    return std::move(writer).text();
}

std::string filesMessage(const ProjectFolder& folder) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("files").beginArray();
    for (const ProjectFile& file : folder.files()) {
        writer.beginObject().key("path").value(file.path).key("revision").value(file.revision);
        const std::string kind = kindOf(folder, file);
        writer.key("kind").value(kind);
        const std::optional<std::filesystem::path> model = pairedWith(folder.root() / file.path).model;
        writer.key("model");
        if (kind == "document" && model)
            writer.value(model->lexically_relative(folder.root()).generic_string());
        else
            writer.value(nullptr);
        writer.endObject();
    }
    writer.endArray().endObject();
    return std::move(writer).text();
}

std::string fileMessage(const ProjectText& file) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("text").value(file.text).key("revision").value(file.revision);
    writer.key("isUtf8").value(file.isUtf8).endObject();
    return std::move(writer).text();
}

std::string savedMessage(const std::string& revision) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("revision").value(revision).endObject();
    return std::move(writer).text();
}

std::string changedMessage(const std::vector<std::string>& paths) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("paths").beginArray();
    for (const std::string& path : paths) writer.value(path);
    writer.endArray().endObject();
    return std::move(writer).text();
}

}  // namespace tavrin::cli
