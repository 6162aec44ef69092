// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot_results.h"

#include <algorithm>
#include <set>
#include <utility>

#include <fmt/format.h>

#include "cli/github_command.h"
#include "tavrin/diagnostics/write_diagnostic.h"
#include "tavrin/doors/words.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/markup_text.h"

namespace tavrin::cli {
namespace {

std::vector<std::string> namesOf(const SnapshotCause& cause, const SnapshotResults& results) {
    std::vector<std::string> names;
    names.reserve(cause.snapshots.size());
    for (const std::size_t at : cause.snapshots) names.push_back(results.snapshots[at].name);
    return names;
}

/// The text that is at fault: the document, its model or settings, or a file.
const std::string& faultyFileOf(const SnapshotResult& failed) {
    return failed.failure->file.empty() ? failed.document : failed.failure->file;
}

/// "w.models/one.json:1:8: " and what is wrong there.
std::string failureInWords(const SnapshotResult& failed) {
    const auto& place = failed.failure->place;
    const std::string where = place ? fmt::format(":{}:{}", place->line, place->column) : "";
    return faultyFileOf(failed) + where + ": " + failed.failure->message;
}

void writeTextPlace(const std::optional<TextPlace>& place, JSONWriter& writer) {
    if (place) writer.key("line").value(place->line).key("column").value(place->column);
}

std::string githubPlace(const std::string& file, const std::optional<TextPlace>& place) {
    const std::string named = "file=" + githubProperty(file);
    return place ? named + fmt::format(",line={},col={}", place->line, place->column) : named;
}

void writeCauses(const SnapshotResults& results, JSONWriter& writer) {
    writer.key("causes").beginArray();
    for (const SnapshotCause& cause : results.causes) {
        writer.beginObject().key("document").value(cause.document).key("message").value(cause.words);
        if (cause.path) tavrin::write(*cause.path, writer.key("path"));
        writeTextPlace(cause.place, writer);
        writer.key("snapshots").beginArray();
        for (const std::string& name : namesOf(cause, results)) writer.value(name);
        writer.endArray().endObject();
    }
    writer.endArray();
}

std::string resultsJSON(const SnapshotResults& results) {
    JSONWriter writer(JSONWriter::Style::pretty);
    writer.beginObject().key("snapshots").beginArray();
    for (const SnapshotResult& one : results.snapshots) {
        writer.beginObject().key("name").value(one.name).key("document").value(one.document);
        writer.key("verdict").value(name(one.verdict));
        if (one.failure) {
            writer.key("message").value(one.failure->message).key("file").value(faultyFileOf(one));
            writeTextPlace(one.failure->place, writer);
        }
        if (!one.difference.empty()) writer.key("difference").value(one.difference);
        if (!one.picture.empty()) writer.key("picture").value(one.picture);
        writer.endObject();
    }
    writeCauses(results, writer.endArray());
    writer.key("orphans").beginArray();
    for (const std::string& orphan : results.orphans) writer.value(orphan);
    writer.endArray().endObject();
    return std::move(writer).text() + "\n";
}

/// Text as XML may hold it, which has no control characters.
std::string xmlText(std::string_view text) {
    std::string safe = markupText(text);
    std::ranges::replace_if(
        safe, [](char c) { return c >= 0 && c < ' '; }, ' ');
    return safe;
}

std::string testCase(std::string_view group, std::string_view name, std::string_view message,
                     const std::vector<std::string>& details = {}) {
    const std::string head = fmt::format(R"(    <testcase classname="{}" name="{}")", xmlText(group), xmlText(name));
    if (message.empty()) return head + "/>\n";
    std::string lines;
    for (const std::string& line : details) lines += "\n" + xmlText(line);
    const std::string end = lines.empty() ? "/>" : ">" + lines + "\n      </failure>";
    return head + fmt::format(">\n      <failure message=\"{}\"{}\n    </testcase>\n", xmlText(message), end);
}

/// A case for each snapshot, but for those that differ one for each cause.
std::string resultsJUnit(const SnapshotResults& results) {
    std::string cases;
    std::size_t count = 1;  // that of orphans
    std::size_t wrong = results.orphansMessage.empty() ? 0 : 1;
    for (const SnapshotResult& one : results.snapshots) {
        if (one.verdict == SnapshotVerdict::different) continue;
        cases += testCase(one.document, one.name, one.failure ? failureInWords(one) : "");
        ++count;
        if (one.failure) ++wrong;
    }
    for (const SnapshotCause& cause : results.causes) {
        const std::string message = cause.where() + ": " + cause.message();
        cases +=
            testCase(cause.document, cause.path ? toText(*cause.path) : cause.words, message, namesOf(cause, results));
        ++count;
        ++wrong;
    }
    cases += testCase("snapshots", "orphans", results.orphansMessage);
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n"
        "  <testsuite name=\"tavrin snapshot\" tests=\"{}\" failures=\"{}\">\n{}  </testsuite>\n</testsuites>\n",
        count, wrong, cases);
}

std::string resultsGitHub(const SnapshotResults& results) {
    std::string lines;
    for (const SnapshotResult& one : results.snapshots)
        if (one.failure)
            lines += githubCommand("error", githubPlace(faultyFileOf(one), one.failure->place), one.failure->message);
    for (const SnapshotCause& cause : results.causes) {
        std::string properties = githubPlace(cause.document, cause.place);
        if (cause.path) properties += ",title=" + githubProperty(toText(*cause.path));
        lines += githubCommand("error", properties, cause.message() + "\n" + joined(namesOf(cause, results), "\n"));
    }
    if (!results.orphansMessage.empty()) lines += githubCommand("error", "title=orphans", results.orphansMessage);
    return lines;
}

constexpr std::string_view pageHead = R"(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>What differs</title>
<style>
  :root { color-scheme: light dark; }
  body { margin: 0; padding: 32px clamp(16px, 4vw, 56px); font: 15px/1.45 Inter, system-ui, sans-serif; }
  h1 { font-size: 26px; margin: 0; }
  h2 { font-size: 17px; margin: 36px 0 4px; overflow-wrap: anywhere; }
  h3 { font-size: 15px; margin: 20px 0 4px; overflow-wrap: anywhere; }
  p { margin: 0 0 12px; overflow-wrap: anywhere; opacity: 0.75; }
  img { display: block; max-width: 100%; }
</style>
<h1>What differs</h1>
<p>Each picture shows before, after, and what differs in red.</p>
)";

std::string pictureOf(const SnapshotResult& one) {
    const std::string address = "./" + percentEncoded(one.picture, PlainInURL{"@/"});
    return fmt::format("<h3>{0}</h3>\n<p>{1}</p>\n<a href=\"{2}\"><img src=\"{2}\" alt=\"{0}\" loading=\"lazy\"></a>\n",
                       markupText(one.name), markupText(one.difference), address);
}

}  // namespace

std::string resultsText(const SnapshotResults& results, SnapshotFormat format) {
    switch (format) {
        case SnapshotFormat::json: return resultsJSON(results);
        case SnapshotFormat::junit: return resultsJUnit(results);
        case SnapshotFormat::github: return resultsGitHub(results);
        case SnapshotFormat::text: break;
    }
    return {};
}

Failure failureOf(const SnapshotCause& cause, const SnapshotResults& results) {
    Failure failure{{"SnapshotDifference", cause.message()}, cause.document, cause.excerpt};
    failure.codingPath = cause.path;
    failure.place = cause.place;
    for (const std::size_t at : cause.snapshots) {
        const SnapshotResult& seen = results.snapshots[at];
        failure.seenIn.push_back({seen.name, seen.difference.empty() ? "the picture is the same" : seen.difference});
    }
    return failure;
}

std::string failuresPage(const SnapshotResults& results) {
    std::string page(pageHead);
    std::set<std::size_t> shown;
    for (const SnapshotCause& cause : results.causes) {
        page += "<h2>" + markupText(cause.where() + (cause.path ? ": " + toText(*cause.path) : "")) + "</h2>\n<p>" +
                markupText(cause.message()) + "</p>\n";
        std::string before;  // names of those whose pictures stand under another cause
        for (const std::size_t at : cause.snapshots) {
            const SnapshotResult& one = results.snapshots[at];
            if (one.picture.empty() || !shown.insert(at).second)
                before += (before.empty() ? "" : ", ") + one.name;
            else
                page += pictureOf(one);
        }
        if (!before.empty()) page += "<p>" + markupText("Also in " + before) + "</p>\n";
    }
    return page + "</html>\n";
}

}  // namespace tavrin::cli
