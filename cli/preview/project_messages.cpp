// SPDX-License-Identifier: MIT
#include "cli/preview/project_messages.h"

#include <cstddef>
#include <string>
#include <utility>

#include "cli/new/widget_template.h"
#include "cli/preview/folder_error.h"
#include "cli/preview/held_settings.h"
#include "cli/project/widget_files.h"
#include "cli/project/widget_settings.h"
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
    if (file.path.ends_with(".toml")) return "settings";
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
        if (kind == "document") writePairs(writer, folder, file.path);
        writer.endObject();
    }
    writer.endArray().endObject();
    return std::move(writer).text();
}

std::string templatesMessage() {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("templates").beginArray();
    for (const WidgetTemplate& each : widgetTemplates()) {
        writer.beginObject().key("name").value(each.name).key("summary").value(each.summary);
        writer.key("document").value(each.document).key("model").value(each.model);
        writer.key("settings");
        writeSettings(writer, readSettings({std::string(each.name), std::string(each.settings)}));
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

std::string createdMessage(const std::vector<ProjectFile>& files) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("files").beginArray();
    for (const ProjectFile& file : files)
        writer.beginObject().key("path").value(file.path).key("revision").value(file.revision).endObject();
    writer.endArray().endObject();
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
