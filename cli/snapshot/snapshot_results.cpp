// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot_results.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "cli/github_command.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/markup_text.h"

namespace tavrin::cli {
namespace {

std::size_t countWrong(const SnapshotResults& results) {
    const auto wrong = std::ranges::count_if(results.snapshots, [](const auto& one) { return !one.message.empty(); });
    return static_cast<std::size_t>(wrong) + (results.orphansMessage.empty() ? 0 : 1);
}

std::string resultsJSON(const SnapshotResults& results) {
    JSONWriter writer(JSONWriter::Style::pretty);
    writer.beginObject().key("snapshots").beginArray();
    for (const SnapshotResult& one : results.snapshots) {
        writer.beginObject().key("name").value(one.name).key("document").value(one.document);
        writer.key("verdict").value(name(one.verdict));
        if (!one.message.empty()) writer.key("message").value(one.message);
        if (!one.picture.empty()) writer.key("picture").value(one.picture);
        writer.endObject();
    }
    writer.endArray().key("orphans").beginArray();
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

std::string testCase(std::string_view group, std::string_view name, std::string_view message) {
    const std::string head = fmt::format(R"(    <testcase classname="{}" name="{}")", xmlText(group), xmlText(name));
    if (message.empty()) return head + "/>\n";
    return head + fmt::format(">\n      <failure message=\"{}\"/>\n    </testcase>\n", xmlText(message));
}

std::string resultsJUnit(const SnapshotResults& results) {
    std::string cases;
    for (const SnapshotResult& one : results.snapshots) cases += testCase(one.document, one.name, one.message);
    cases += testCase("snapshots", "orphans", results.orphansMessage);
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n"
        "  <testsuite name=\"tavrin snapshot\" tests=\"{}\" failures=\"{}\">\n{}  </testsuite>\n</testsuites>\n",
        results.snapshots.size() + 1, countWrong(results), cases);
}

std::string resultsGitHub(const SnapshotResults& results) {
    std::string lines;
    for (const SnapshotResult& one : results.snapshots)
        if (!one.message.empty()) lines += githubCommand("error", "file=" + githubProperty(one.document), one.message);
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
  p { margin: 0 0 12px; overflow-wrap: anywhere; opacity: 0.75; }
  img { display: block; max-width: 100%; }
</style>
<h1>What differs</h1>
<p>Each picture shows before, after, and what differs in red.</p>
)";

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

std::string failuresPage(const SnapshotResults& results) {
    std::string page(pageHead);
    for (const SnapshotResult& one : results.snapshots) {
        if (one.picture.empty()) continue;
        const std::string address = "./" + percentEncoded(one.picture, PlainInURL{"@/"});
        page += fmt::format(
            "<h2>{0}</h2>\n<p>{1}</p>\n<a href=\"{2}\"><img src=\"{2}\" alt=\"{0}\" loading=\"lazy\"></a>\n",
            markupText(one.name), markupText(one.message), address);
    }
    return page + "</html>\n";
}

}  // namespace tavrin::cli
