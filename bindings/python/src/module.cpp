// SPDX-License-Identifier: MIT
#include <optional>
#include <string>
#include <vector>

#include <nanobind/nanobind.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include "bindings/python/src/arguments.h"
#include "bindings/python/src/batches.h"
#include "bindings/python/src/calls.h"
#include "bindings/python/src/errors.h"
#include "bindings/python/src/pixels.h"
#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/schema/document_schema.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

nb::bytes bytesOf(const std::string& text) { return nb::bytes(text.data(), text.size()); }

OpenDocument openDocument(nb::handle text, const nb::dict& options) {
    const std::string_view view = textOf(text, "a document");
    const RenderBudget budget = drawingOptions(options).widget.budget;
    return unlocked([&] { return OpenDocument(std::string(view), budget); });
}

OpenWidget bind(const OpenDocument& document, nb::handle model, const nb::dict& options) {
    const auto view = optionalText(model, "model");
    DrawingOptions read = drawingOptions(options);
    return unlocked(
        [&] { return document.widget(view ? std::optional(std::string(*view)) : std::nullopt, std::move(read)); });
}

nb::bytes encode(const OpenWidget& widget, const nb::dict& options) {
    const PictureOptions picture = pictureOptions(options);
    return bytesOf(unlocked([&] { return widget.encode(picture); }));
}

Pixels pixelsOf(const OpenWidget& widget) {
    return unlocked([&] { return Pixels(*widget.pixels()); });
}

std::optional<double> validUntil(const OpenWidget& widget) {
    const auto date = unlocked([&] { return widget.validUntil(); });
    return date ? std::optional(date->secondsSince1970) : std::nullopt;
}

std::string explain(const OpenWidget& widget, const std::optional<std::string>& path) {
    return unlocked([&] { return widget.explanation(path); });
}

/// A member function that gives a text.
template <auto member>
std::string text(const OpenWidget& widget) {
    return unlocked([&] { return (widget.*member)(); });
}

std::string check(nb::handle document, nb::handle model, const nb::dict& options,
                  const std::vector<std::string>& families) {
    const std::string_view documentText = textOf(document, "a document");
    const auto modelText = optionalText(model, "model");
    const DrawingOptions read = drawingOptions(options);
    return unlocked([&] { return toJSON(checkDocument(documentText, modelText, read, families)); });
}

}  // namespace
}  // namespace tavrin::python

NB_MODULE(_tavrin, module) {
    using namespace tavrin::python;
    using tavrin::OpenDocument;
    using tavrin::OpenWidget;

    translateErrors();
    watchForks();
    addPixels(module);
    addBatches(module);
    nb::class_<OpenDocument>(module, "Document", nb::is_final())
        .def("text", [](const OpenDocument& document) { return bytesOf(document.text()); })
        .def("widget", bind, nb::arg("model").none(), nb::arg("options"));
    nb::class_<OpenWidget>(module, "Widget", nb::is_final())
        .def("encode", encode)
        .def("pixels", pixelsOf)
        .def("tree", text<&OpenWidget::treeText>)
        .def("layout", text<&OpenWidget::layoutText>)
        .def("targets", text<&OpenWidget::targetsText>)
        .def("explain", explain, nb::arg("path").none())
        .def("valid_until", validUntil)
        .def("room", [](const OpenWidget& widget) { return widget.options().widget.room.name; });
    module.def("open_document", openDocument);
    module.def("check", check, nb::arg("document"), nb::arg("model").none(), nb::arg("options"), nb::arg("families"));
    module.def("schema", tavrin::documentSchema);
    module.def("options", tavrin::sharedOptionsJSON);
    module.attr("version") = TAVRIN_VERSION;
}
