// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/project/operands.h"
#include "cli/several_options.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/ui/environment.h"

namespace tavrin::cli {

/// One picture of a matrix, by the places of what it is made of.
struct Cell {
    std::size_t document = 0;
    std::size_t model = 0;
    std::size_t moment = 0;
    std::size_t room = 0;
    std::size_t appearance = 0;
    std::size_t scale = 0;
};

/// Documents and models, rooms and looks, and which of them are drawn with which others.
struct Matrix {
    struct Document {
        std::string path;
        std::string name;  ///< the folder of its pictures; no two documents have the same
    };
    /// A model document, or none.
    struct Model {
        std::optional<std::string> path;
        std::string name;  ///< what stands for it in a picture's name; may be empty

        friend bool operator==(const Model&, const Model&) = default;
    };
    struct Moment {
        Date date;
        std::string text;  ///< as it is given; empty for the present one
        std::string name;  ///< as for models
    };

    // What any document is drawn with, each once.
    std::vector<Document> documents;
    std::vector<Model> models;
    std::vector<Moment> moments;
    std::vector<WidgetRoom> rooms;
    std::vector<Appearance> appearances;
    std::vector<double> scales;
    /// The pictures; the scale changes first, then the appearance, room, moment, model and document.
    std::vector<Cell> cells;

    [[nodiscard]] std::size_t count() const { return cells.size(); }
};

/// What one document of a matrix is drawn with: all of them with all others.
struct MatrixLooks {
    std::vector<WidgetRoom> rooms;
    /// Each model as it is in each of the rooms; none where it does not count there.
    std::vector<std::vector<std::optional<Matrix::Model>>> models;
    std::vector<Matrix::Moment> moments;
    std::vector<Appearance> appearances;
    std::vector<double> scales;

    [[nodiscard]] std::size_t count() const;
};

/// Adds the cells of one of the matrix's documents.
void addCells(Matrix& matrix, std::size_t document, const MatrixLooks& looks);

/// A cell's name without a suffix: "weather/systemSmall-dark@2x-rainy". It depends on the cell alone, not on
/// what else is drawn.
[[nodiscard]] std::string nameOf(const Matrix& matrix, const Cell& cell);
/// The same where another model stands for the cell's.
[[nodiscard]] std::string nameOf(const Matrix& matrix, const Cell& cell, const std::string& model);

/// Names documents by the paths that they are named after, from the first folder of `tops` that these lie in, or else
/// from the working directory, without suffixes: "widgets/weather". Throws `UsageError` for two of the same name.
[[nodiscard]] std::vector<Matrix::Document> namedDocuments(const std::vector<Operand>& documents,
                                                           const std::vector<std::filesystem::path>& tops = {});

}  // namespace tavrin::cli
