// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace tavrin::bench {

/// A file of the project, whole.
inline std::string readFile(const std::string& path) {
    std::ifstream file(std::string(TAVRIN_SOURCE_DIR) + "/" + path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// An example's document, model and pictures.
struct Example {
    explicit Example(const std::string& name)
        : document(readFile("examples/" + name + "/document.json")),
          model(readFile("examples/" + name + "/model.json")),
          pictures(std::string(TAVRIN_SOURCE_DIR) + "/examples/" + name + "/pictures") {}

    std::string document;
    std::string model;
    /// The folder of its pictures, where it has any.
    std::string pictures;
};

/// A vertical stack of `count` texts.
inline std::string flatDocument(int count) {
    std::string text = R"({"version":"1.2","nodes":{"main":{"type":"vstack","children":[)";
    for (int i = 0; i < count; ++i) {
        if (i > 0) text += ',';
        text += R"({"type":"text","content":"row","fontSize":12,"modifiers":[{"type":"padding","length":2}]})";
    }
    return text + "]}}}";
}

/// Stacks nested in each other, alternating in direction, each with one text beside the next stack.
inline std::string nestedDocument(int depth) {
    std::string text = R"({"version":"1.2","nodes":{"main":)";
    for (int i = 0; i < depth; ++i) {
        text += i % 2 == 0 ? R"({"type":"vstack","children":[)" : R"({"type":"hstack","children":[)";
        text += R"({"type":"text","content":"row","fontSize":12},)";
    }
    text += R"({"type":"spacer"})";
    for (int i = 0; i < depth; ++i) text += "]}";
    return text + "}}";
}

}  // namespace tavrin::bench
