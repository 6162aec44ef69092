// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>

#include <fmt/format.h>

#include "cli/matrix/matrix_picture.h"
#include "cli/options.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/foundation/net/percent_encoding.h"
#include "tavrin/platform/foundation/strings/markup_text.h"

namespace tavrin::cli {
namespace {

constexpr std::string_view head = R"(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Contact sheet</title>
<style>
  :root { color-scheme: light dark; --ground: #f2f2f5; --ink: #1d1d22; --quiet: #6c6c76; --line: #dcdce2;
          --bad: #b3261e; --badground: #fdecea; }
  @media (prefers-color-scheme: dark) {
    :root { --ground: #161619; --ink: #ececf1; --quiet: #9a9aa5; --line: #303037; --bad: #ff8a80;
            --badground: #3a1c1a; }
  }
  body { margin: 0; padding: 32px clamp(16px, 4vw, 56px); background: var(--ground); color: var(--ink);
         font: 15px/1.45 Inter, system-ui, sans-serif; }
  header { display: flex; flex-wrap: wrap; gap: 4px 16px; align-items: baseline; }
  h1 { font-size: 26px; margin: 0; letter-spacing: -0.02em; }
  h2 { font-size: 19px; margin: 40px 0 0; padding-top: 20px; border-top: 1px solid var(--line); letter-spacing: -0.01em;
       overflow-wrap: anywhere; }
  h3 { font-size: 14px; font-weight: 600; margin: 20px 0 0; color: var(--quiet); overflow-wrap: anywhere; }
  .pictures { display: flex; flex-wrap: wrap; margin-top: 16px; gap: 20px 28px; align-items: flex-end; }
  .looks { display: flex; flex-wrap: wrap; gap: 12px; align-items: flex-end; }
  figure { margin: 0; max-width: 100%; }
  .room { display: grid; place-items: center; padding: 18px; border-radius: 22px; overflow: auto; }
  .light { background: linear-gradient(160deg, #c9d6ea, #e9dfe8); }
  .dark { background: linear-gradient(160deg, #20283a, #372a3c); }
  img { display: block; filter: drop-shadow(0 1px 2px #0003) drop-shadow(0 8px 16px #0002); }
  /* The shapes that a lock screen gives its widgets, as in the preview. */
  .accessoryCircular { border-radius: 50%; }
  .accessoryRectangular { border-radius: 12px; }
  .accessoryInline { border-radius: 8px; }
  .error { box-sizing: border-box; padding: 12px; border-radius: 14px; overflow: auto; color: var(--bad);
           background: var(--badground); font: 12px/1.4 ui-monospace, monospace; white-space: pre-wrap;
           overflow-wrap: anywhere; min-width: 200px; max-width: 640px; }
  figcaption { font-size: 13px; margin: 8px 4px 0; color: var(--quiet); }
  figcaption b { color: var(--ink); font-weight: 600; }
  figcaption .warning { display: block; color: var(--bad); max-width: 360px; }
  p.sum { margin: 0; color: var(--quiet); }
  a { color: inherit; }
</style>
)";

/// A file's name as a relative address; what means something in one, and in a list of them, is percent-encoded.
std::string address(std::string_view file) { return "./" + percentEncoded(file, PlainInURL{"@/"}); }

using Pictures = std::span<const MatrixPicture>;

/// Hands over the runs of neighbours of which `value` of their cells is the same.
template <class Value, class Visit>
void forEachRun(Pictures pictures, Value value, const Visit& visit) {
    while (!pictures.empty()) {
        const auto isOther = [&](const MatrixPicture& picture) {
            return std::invoke(value, picture.cell) != std::invoke(value, pictures.front().cell);
        };
        const auto end = std::find_if(pictures.begin(), pictures.end(), isOther);
        visit(Pictures(pictures.begin(), end));
        pictures = Pictures(end, pictures.end());
    }
}

std::string_view appearanceWord(const Matrix& matrix, const Cell& cell) {
    return name(matrix.appearances[cell.appearance]);
}

/// The pictures of one room and appearance, in all scales, as one: the browser takes the one that fits its screen.
std::string image(const Matrix& matrix, Pictures scales) {
    std::string sources;
    const MatrixPicture* densest = nullptr;
    for (const MatrixPicture& picture : scales) {
        if (picture.file.empty()) continue;
        const double scale = matrix.scales[picture.cell.scale];
        sources += fmt::format("{}{} {}x", sources.empty() ? "" : ", ", address(picture.file), shortNumber(scale));
        if (!densest || scale > matrix.scales[densest->cell.scale]) densest = &picture;
    }
    if (!densest) return "";
    const WidgetRoom& room = matrix.rooms[densest->cell.room];
    const std::string what = markupText(room.name + ", " + std::string(appearanceWord(matrix, densest->cell)));
    return fmt::format(
        "<a href=\"{0}\"><img src=\"{0}\" srcset=\"{1}\" width=\"{2}\" height=\"{3}\" alt=\"{4}\" class=\"{5}\" "
        "loading=\"lazy\"></a>",
        address(densest->file), sources, shortNumber(room.size.width), shortNumber(room.size.height), what,
        markupText(room.name));
}

std::string caption(const Matrix& matrix, Pictures scales) {
    const WidgetRoom& room = matrix.rooms[scales.front().cell.room];
    std::string text = fmt::format("<figcaption><b>{}</b> {} · {} × {}", markupText(room.name),
                                   appearanceWord(matrix, scales.front().cell), shortNumber(room.size.width),
                                   shortNumber(room.size.height));
    for (const MatrixPicture& picture : scales)
        if (!picture.file.empty())
            text += fmt::format(" · <a href=\"{}\">@{}x</a>", address(picture.file),
                                shortNumber(matrix.scales[picture.cell.scale]));
    for (const std::string& warning : scales.front().warnings)
        text += "<span class=\"warning\">" + markupText(warning) + "</span>";
    return text + "</figcaption>";
}

std::string errorBox(const std::string& error) { return "<div class=\"error\">" + markupText(error) + "</div>"; }

std::string figure(const Matrix& matrix, Pictures scales) {
    std::string text = fmt::format("<figure><div class=\"room {}\">", appearanceWord(matrix, scales.front().cell));
    text += image(matrix, scales);
    std::string lastError;
    for (const MatrixPicture& picture : scales) {
        if (picture.error.empty() || picture.error == lastError) continue;
        text += errorBox(picture.error);
        lastError = picture.error;
    }
    return text + "</div>" + caption(matrix, scales) + "</figure>\n";
}

/// Above the pictures of one model and moment, where there are several: which.
std::string subheading(const Matrix& matrix, const Cell& cell) {
    std::string what;
    if (matrix.models.size() > 1) what = matrix.models[cell.model].name;
    if (matrix.moments.size() > 1) what += (what.empty() ? "" : " · ") + matrix.moments[cell.moment].text;
    return what.empty() ? "" : "<h3>" + markupText(what) + "</h3>\n";
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

/// The pictures of one document, model and moment; where all failed alike, what went wrong.
std::string group(const Matrix& matrix, Pictures pictures) {
    const std::string& error = pictures.front().error;
    const auto failedAlike = [&error](const MatrixPicture& picture) { return picture.error == error; };
    if (!error.empty() && std::all_of(pictures.begin(), pictures.end(), failedAlike))
        return "<div class=\"pictures\">" + errorBox(error) + "</div>\n";
    std::string text = "<div class=\"pictures\">\n";
    forEachRun(pictures, &Cell::room, [&](Pictures inRoom) {
        text += "<div class=\"looks\">";
        forEachRun(inRoom, &Cell::appearance, [&](Pictures scales) { text += figure(matrix, scales); });
        text += "</div>\n";
    });
    return text + "</div>\n";
}

}  // namespace

std::string contactSheet(const Matrix& matrix, Pictures pictures) {
    std::size_t failures = 0;
    for (const MatrixPicture& picture : pictures) failures += picture.error.empty() ? 0U : 1U;
    std::string page(head);
    page += fmt::format("<header><h1>Contact sheet</h1><p class=\"sum\">{} of {}{}</p></header>\n",
                        counted(pictures.size(), "picture", "pictures"),
                        counted(matrix.documents.size(), "document", "documents"),
                        failures == 0 ? "" : " · " + counted(failures, "failed", "failed"));
    const auto modelName = [&](const Cell& cell) { return std::string_view(matrix.models[cell.model].name); };
    forEachRun(pictures, &Cell::document, [&](Pictures ofDocument) {
        page += "<h2>" + markupText(matrix.documents[ofDocument.front().cell.document].name) + "</h2>\n";
        forEachRun(ofDocument, modelName, [&](Pictures ofModel) {
            forEachRun(ofModel, &Cell::moment, [&](Pictures ofMoment) {
                page += subheading(matrix, ofMoment.front().cell) + group(matrix, ofMoment);
            });
        });
    });
    return page + "</html>\n";
}

}  // namespace tavrin::cli
