// SPDX-License-Identifier: MIT
#include <string>

#include <gtest/gtest.h>

#include "tests/dsl/rendered.h"

// Errors of binding and drawing know where in the document they happened.

namespace tavrin {
namespace {

/// The path of what loading a document throws; "(none)" for an error without a place.
std::string placeOfFailure(std::string_view document, std::string_view model) {
    try {
        static_cast<void>(rendered(document, model));
    } catch (const PlacedError& error) {
        return error.isRooted ? toText(error.codingPath) : "(none)";
    }
    return "(no error)";
}

TEST(FailurePlace, IsTheWayFromTheRoot) {
    const struct {
        const char* why;
        const char* nodes;
        const char* place;
    } rows[] = {
        {"a property of the main node", R"({"main": {"type": "text", "content": "{{initServerParam.gone}}"}})",
         "nodes.main.content"},
        {"a child's", R"({"main": {"type": "vstack", "children": [{"type": "text", "content": "a"},
            {"type": "hstack", "children": [{"type": "text", "content": "{{x}}"}]}]}})",
         "nodes.main.children[1].children[0].content"},
        {"a modifier's", R"({"main": {"type": "text", "content": "a", "modifiers": [
            {"type": "lineLimit", "number": 1}, {"type": "padding", "length": "{{initServerParam.text}}"}]}})",
         "nodes.main.modifiers[1].length"},
        {"of what stands behind",
         R"({"main": {"type": "text", "content": "a", "modifiers": [{"type": "background", "view":
            {"type": "color", "value": "no colour"}}]}})",
         "nodes.main.modifiers[0].view"},
        {"of what stands before",
         R"({"main": {"type": "text", "content": "a", "modifiers": [{"type": "overlay", "view":
            {"type": "text", "content": "{{initServerParam.gone}}"}}]}})",
         "nodes.main.modifiers[0].view.content"},
        {"a record held directly",
         R"({"main": {"type": "circle", "fill": true, "fillColor": {"value": "{{initServerParam.gone}}"}}})",
         "nodes.main.fillColor.value"},
        {"within a named node, by that name",
         R"({"main": {"type": "vstack", "children": [{"type": "node", "name": "a row"}]},
            "a row": {"type": "hstack", "children": [{"type": "text", "content": "{{initServerParam.gone}}"}]}})",
         R"(nodes["a row"].children[0].content)"},
        {"of what clips", R"({"main": {"type": "text", "content": "a", "modifiers": [{"type": "clipShape", "view":
            {"type": "circle", "fillColor": {"value": "no colour"}}}]}})",
         "nodes.main.modifiers[0].view.fillColor"},
        {"what clips, where it is no shape", R"({"main": {"type": "text", "content": "a", "modifiers": [
            {"type": "clipShape", "view": {"type": "spacer"}}]}})",
         "nodes.main.modifiers[0]"},
        {"a text's colour", R"({"main": {"type": "text", "content": "a", "modifiers": [
            {"type": "foregroundColor", "color": {"value": "no colour"}}]}})",
         "nodes.main.modifiers[0].color"},
        {"a text's colour that is a gradient", R"({"main": {"type": "text", "content": "a", "modifiers": [
            {"type": "foregroundColor", "color":
            {"value": "#FF0000", "gradient": true, "start": "top", "end": "bottom"}}]}})",
         "nodes.main.modifiers[0].color"},
        {"a shape's stroke", R"({"main": {"type": "circle", "stroke": true, "strokeColor": {"value": "no colour"}}})",
         "nodes.main.strokeColor"},
        {"a modifier of a shape's fill", R"({"main": {"type": "circle", "fillColor": {"value": "#FF0000", "modifiers": [
            {"type": "opacity", "opacity": "{{initServerParam.gone}}"}]}}})",
         "nodes.main.fillColor.modifiers[0].opacity"},
        {"a link's label",
         R"({"main": {"type": "link", "url": "a", "view": {"type": "text", "content": "{{initServerParam.gone}}"}}})",
         "nodes.main.view.content"},
        {"a progress view's colour", R"({"main": {"type": "progressView", "style": "linear", "value": 1, "lineWidth": 2,
            "background": {"value": "no colour"}}})",
         "nodes.main.background"},
        {"what is attached to it", R"({"main": {"type": "progressView", "style": "linear", "value": 1, "lineWidth": 2,
            "attachment": {"position": "top", "view": {"type": "text", "content": "{{initServerParam.gone}}"}}}})",
         "nodes.main.attachment.view.content"},
        {"a name that no node has", R"({"main": {"type": "vstack", "children": [{"type": "node", "name": "gone"}]}})",
         "nodes.main.children[0]"},
        {"a cycle, where it closes", R"({"main": {"type": "node", "name": "a"}, "a": {"type": "node", "name": "a"}})",
         "nodes.a"},
        {"no main node", "{}", "(none)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string document = R"({"version": "1.0", "nodes": )" + std::string(row.nodes) + "}";
        EXPECT_EQ(placeOfFailure(document, R"({"text": "no number"})"), row.place);
    }
}

}  // namespace
}  // namespace tavrin
