// SPDX-License-Identifier: MIT
#pragma once

#include "cli/http/http_message.h"
#include "cli/preview/drawing.h"
#include "cli/preview/preview.h"
#include "cli/preview/project_folder.h"

namespace tavrin::cli {

/// What the preview's page can ask for. Several threads may ask at once.
///
/// | request | answer |
/// | --- | --- |
/// | GET / | the page, with /preview.js and /preview.css |
/// | GET /api/project | what does not change: the folder's name, screens and their families, the time zone |
/// | GET /api/schema | the JSON Schema of documents |
/// | GET /api/files | the folder's JSON files |
/// | GET /api/file?path= | a file's text and revision |
/// | GET /api/templates | what a widget can begin with |
/// | POST /api/save | replaces a file's text |
/// | POST /api/new | makes the files of a widget from a template |
/// | POST /api/create | makes new files of a document, a model or both |
/// | POST /api/render | a picture |
/// | POST /api/explain | the laid-out tree, and where in the document each view comes from |
/// | POST /api/check | what is wrong or doubtful |
/// | GET /api/events | tells the paths of files when they change |
class Routes {
public:
    Routes(ProjectFolder& folder, PreviewOptions options) : folder_(folder), options_(std::move(options)) {}

    [[nodiscard]] HTTPResponse answer(const HTTPRequest& request) const;
    /// Whether a request asks for what is drawn.
    [[nodiscard]] static bool takesLong(const HTTPRequest& request);

private:
    struct Route;
    static const Route* routeTo(const HTTPRequest& request);

    [[nodiscard]] HTTPResponse page(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse script(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse style(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse project(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse schema(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse files(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse file(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse templates(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse begin(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse create(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse save(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse render(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse explain(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse check(const HTTPRequest& request) const;
    [[nodiscard]] HTTPResponse events(const HTTPRequest& request) const;

    /// What a request asks to be drawn.
    [[nodiscard]] Drawing drawing(const HTTPRequest& request) const;

    ProjectFolder& folder_;
    PreviewOptions options_;
};

}  // namespace tavrin::cli
