// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/failure.h"
#include "cli/input.h"
#include "cli/matrix/matrix.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/platform/paint/image_renderer.h"

namespace tavrin::cli {

/// What came of one cell beside its picture.
struct CellOutcome {
    /// What was doubtful, a line each; also what was heard while the document was loaded.
    std::vector<std::string> notes = {};
    std::optional<Failure> failure = std::nullopt;
};

/// Makes renderers for the cells of a matrix, on any number of threads. A document is read once, and loaded once for
/// each model and moment; each cell is laid out for itself, since size, scale and appearance all count there.
class CellRenderer {
public:
    /// Reads all models. Throws `IOError` for one that cannot be read. Keeps references to both.
    CellRenderer(const Arguments& arguments, const Matrix& matrix);

    /// Loads what a cell needs and hands its renderer to `use`; what goes wrong, there too, becomes the failure.
    [[nodiscard]] CellOutcome draw(const Cell& cell, const std::function<void(ImageRenderer&)>& use);

private:
    struct Text {
        std::once_flag once;
        Source source;
        std::exception_ptr error;
    };
    struct Loaded {
        std::once_flag once;
        AnyView view;
        std::optional<URL> widgetURL;
        CellOutcome outcome;
    };

    Text& document(std::size_t at);
    Loaded& loaded(const Cell& cell);
    void load(const Cell& cell, Loaded& loaded);
    [[nodiscard]] RenderOptions optionsFor(const Cell& cell, const Loaded& loaded,
                                           std::vector<std::string>& notes) const;

    const Arguments& arguments_;
    const Matrix& matrix_;
    std::vector<std::optional<Source>> models_;
    std::deque<Text> documents_;
    std::deque<Loaded> loaded_;
};

}  // namespace tavrin::cli
