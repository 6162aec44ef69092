// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/several_options.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/ui/environment.h"

namespace tavrin::cli {

/// Documents and models, rooms and looks, all of which are drawn with all others.
struct Matrix {
    struct Document {
        std::string path;
        std::string name;  ///< the folder of its pictures; no two documents have the same
    };
    /// A model document, or none.
    struct Model {
        std::optional<std::string> path;
        std::string name;  ///< what stands for it in a picture's name; may be empty
    };
    struct Moment {
        Date date;
        std::string text;  ///< as it is given; empty for the present one
        std::string name;  ///< as for models
    };

    std::vector<Document> documents;
    std::vector<Model> models;
    std::vector<Moment> moments;
    std::vector<WidgetRoom> rooms;
    std::vector<Appearance> appearances;
    std::vector<double> scales;

    [[nodiscard]] std::size_t count() const {
        return documents.size() * models.size() * moments.size() * rooms.size() * appearances.size() * scales.size();
    }
};

/// One picture of a matrix, by the places of what it is made of.
struct Cell {
    std::size_t document = 0;
    std::size_t model = 0;
    std::size_t moment = 0;
    std::size_t room = 0;
    std::size_t appearance = 0;
    std::size_t scale = 0;
};

/// The cell at a place, below `count`; the scale changes first, the document last.
[[nodiscard]] Cell cellAt(const Matrix& matrix, std::size_t index);

/// A cell's name without a suffix: "weather/systemSmall-dark@2x-rainy". It depends on the cell alone, not on
/// what else is drawn.
[[nodiscard]] std::string nameOf(const Matrix& matrix, const Cell& cell);
/// The same where another model stands for the cell's.
[[nodiscard]] std::string nameOf(const Matrix& matrix, const Cell& cell, const std::string& model);

/// Names documents by their paths from the first folder of `tops` that they lie in, or else from the working directory,
/// without suffixes: "widgets/weather". Throws `UsageError` for two of the same name.
[[nodiscard]] std::vector<Matrix::Document> namedDocuments(const std::vector<std::string>& paths,
                                                           const std::vector<std::filesystem::path>& tops = {});

}  // namespace tavrin::cli
