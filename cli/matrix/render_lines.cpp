// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "cli/io_error.h"
#include "cli/matrix/cell_report.h"
#include "cli/matrix/drawn_cell.h"
#include "cli/matrix/model_lines.h"
#include "cli/matrix/sha256.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/verbs.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/budget/metering.h"

namespace tavrin::cli {
namespace {

/// What became of one line: a picture for each cell, all of which fail where the line is at fault.
struct DrawnLine {
    Source model;
    std::string name;  ///< of the pictures
    std::vector<DrawnCell> cells;
};

/// Where a model stands: "people.jsonl:17".
std::string placeOf(const Source& model) { return model.name + ":" + std::to_string(model.firstLine); }

/// A picture's file without its suffix: the model's name alone where each model has one picture.
std::string fileOf(const Matrix& matrix, const Cell& cell, const std::string& name) {
    return matrix.count() == 1 ? name : nameOf(matrix, cell, name);
}

/// How many bytes a model's name may have in the names of all its pictures.
std::size_t roomForName(const Matrix& matrix) {
    constexpr std::size_t longestFileName = 255;
    const std::string_view oneByte = "x";
    std::size_t longest = 0;
    for (std::size_t index = 0; index < matrix.count(); ++index) {
        const std::filesystem::path file = fileOf(matrix, matrix.cells[index], std::string(oneByte)) + ".png";
        longest = std::max(longest, file.filename().string().size() - oneByte.size());
    }
    return longestFileName - longest;
}

/// Draws blocks of models, on any number of threads.
class LineRenderer {
public:
    explicit LineRenderer(const LinesArguments& arguments)
        : arguments_(arguments), documents_(arguments, arguments.matrix), nameBytes_(roomForName(arguments.matrix)) {}

    /// Reports the documents that cannot be drawn with any model, which are left out, and says how many there are.
    [[nodiscard]] std::size_t leaveOutBroken(const Reporter& reporter) {
        for (std::size_t at = 0; at < arguments_.documents.size(); ++at) {
            try {
                static_cast<void>(documents_.prepared(at));
            } catch (...) {
                reporter.report(describe(std::current_exception(), documents_.source(at), nullptr));
                broken_.insert(at);
            }
        }
        return broken_.size();
    }

    [[nodiscard]] std::vector<DrawnLine> drawn(std::vector<ModelLine>& block) {
        std::vector<DrawnLine> lines;
        lines.reserve(block.size());
        for (ModelLine& line : block) lines.push_back(drawn(line));
        return lines;
    }

private:
    DrawnLine drawn(ModelLine& line) {
        DrawnLine drawn{std::move(line.source), {}, {}};
        std::optional<Failure> failure;
        try {
            drawn.name = pictureName(drawn.model, line.isTooLong);
        } catch (...) {
            failure = describe(std::current_exception(), {}, &drawn.model);
        }
        for (std::size_t index = 0; index < arguments_.matrix.count(); ++index) {
            if (broken_.contains(arguments_.matrix.cells[index].document)) continue;
            DrawnCell& cell = drawn.cells.emplace_back(DrawnCell{{arguments_.matrix.cells[index]}});
            cell.picture.model = placeOf(drawn.model);
            if (failure)
                cell.outcome.failure = failure;
            else
                draw(cell, drawn.model);
        }
        return drawn;
    }

    /// Draws one model in one look.
    void draw(DrawnCell& drawn, const Source& model) {
        const Cell& cell = drawn.picture.cell;
        try {
            const WidgetOptions options = optionsFor(arguments_, arguments_.matrix, cell, drawn.outcome.notes);
            Widget widget = documents_.prepared(cell.document).widget(model.text, options);
            drawn.draw(widget, arguments_);
        } catch (...) {
            const Source& document = documents_.source(cell.document);
            Failure& failure = drawn.outcome.failure.emplace(describe(std::current_exception(), document, &model));
            if (failure.file != model.name) failure.message += ", with the model " + placeOf(model);
        }
    }

    std::string pictureName(const Source& model, bool isTooLong) const {
        if (isTooLong) {
            DecodingError error(DecodingError::Kind::dataCorrupted, {},
                                "the line is longer than " + std::to_string(ModelLines::maximumLineBytes) + " bytes");
            error.role = TextRole::model;
            error.offset = 0;
            throw error;
        }
        if (!arguments_.key) return std::to_string(model.firstLine);
        try {
            Cost cost;
            const Metering metering(arguments_.budget, cost);
            const JSONText text(model.text);
            return arguments_.key->nameIn(text.root(), nameBytes_);
        } catch (PlacedError& error) {
            error.role = TextRole::model;
            throw;
        }
    }

    const LinesArguments& arguments_;
    MatrixDocuments documents_;
    std::size_t nameBytes_;
    std::set<std::size_t> broken_;  // documents that are not drawn
};

/// The names that are taken. Of each only a part of its digest is kept: there may be millions.
class TakenNames {
public:
    /// Whether no name before was the same.
    [[nodiscard]] bool add(const std::string& name) {
        return digests_.insert(std::stoull(sha256(name).substr(0, 16), nullptr, 16)).second;
    }

private:
    std::unordered_set<std::uint64_t> digests_;
};

/// Writes the pictures, and the index as it comes.
class LineWriter {
public:
    explicit LineWriter(const LinesArguments& arguments)
        : arguments_(arguments),
          indexFile_(arguments.folder / "index.json"),
          index_(arguments.matrix, [this](std::string_view piece) { indexFile_.write(piece); }) {}

    void take(DrawnLine& line, CellReport& report) {
        if (arguments_.key && !line.name.empty() && !names_.add(line.name)) refuseTaken(line);
        for (DrawnCell& drawn : line.cells) {
            if (!drawn.outcome.failure) write(drawn, line.name);
            report.add(arguments_.matrix, drawn.picture.cell, drawn.outcome);
            drawn.describe();
            index_.add(drawn.picture);
        }
    }

    void finish() {
        index_.finish();
        indexFile_.commit();
    }

private:
    void refuseTaken(DrawnLine& line) const {
        try {
            arguments_.key->failTaken(line.name);
        } catch (...) {
            const Failure failure = describe(std::current_exception(), {}, &line.model);
            for (DrawnCell& drawn : line.cells) drawn.outcome = {{}, failure};
        }
    }

    void write(DrawnCell& drawn, const std::string& name) {
        drawn.picture.file = fileOf(arguments_.matrix, drawn.picture.cell, name) + ".png";
        const std::filesystem::path path = arguments_.folder / drawn.picture.file;
        if (path.parent_path() != lastFolder_) makeFolder(path.parent_path());
        lastFolder_ = path.parent_path();
        StreamedFile file(path);
        file.write(drawn.png);
        file.commit();
    }

    const LinesArguments& arguments_;
    StreamedFile indexFile_;
    IndexWriter index_;
    TakenNames names_;
    std::filesystem::path lastFolder_;
};

}  // namespace

int run(const LinesArguments& arguments, const Reporter& reporter) {
    ModelLines lines(arguments.lines);
    LineRenderer renderer(arguments);
    const std::size_t broken = renderer.leaveOutBroken(reporter);
    if (broken == arguments.documents.size()) return 1;
    makeFolder(arguments.folder);
    LineWriter writer(arguments);
    Progress progress(0);
    CellReport report(reporter, progress);
    inOrder<std::vector<ModelLine>, std::vector<DrawnLine>>(
        [&] { return lines.nextBlock(); }, [&] { return lines.isReady(); },
        [&](std::vector<ModelLine>& block) { return renderer.drawn(block); },
        [&](std::vector<DrawnLine> block) {
            for (DrawnLine& line : block) writer.take(line, report);
        });
    writer.finish();
    return report.failed() || broken > 0 ? 1 : 0;
}

}  // namespace tavrin::cli
