// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/command_line.h"
#include "cli/destination.h"
#include "cli/frames.h"
#include "cli/matrix/matrix.h"
#include "cli/matrix/model_key.h"
#include "cli/snapshot/snapshot_options.h"
#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

// A command line whose every value is right: one struct for what each verb is given.

/// What snapshots and checks show where no other moment is given.
inline constexpr std::string_view repeatableMoment = "2026-03-01T09:41:00Z";

/// A document, and how the command line and what lies beside it want it drawn.
struct DocumentInput {
    std::string path = {};     ///< as it is written, or was found; "-" is standard input
    std::string namedAs = {};  ///< what its pictures are named after; see `Operand::namedAs`
    std::optional<std::string> model = std::nullopt;
    WidgetOptions widget = {};
    /// Why it cannot be worked on, where what lies beside it is at fault; null where nothing is.
    std::exception_ptr fault = nullptr;
    /// `WidgetOptions::imageCacheDir` as it is written; for `fetch` where pictures go, and nowhere else then.
    std::optional<std::filesystem::path> imageCacheDir = std::nullopt;
};

/// What every verb of documents is given.
struct DocumentArguments {
    /// At least one.
    std::vector<DocumentInput> documents = {};
    RenderBudget budget = {};
    /// Whether a picture that cannot be had is an error.
    bool failsOnMissing = false;
    /// Whether a model that cannot be read ends the run, since it is the command's own or there is one document only;
    /// else it fails its document.
    bool modelsEndRun = true;
};

struct RenderArguments : DocumentArguments {
    Destination destination = {};
    /// What is drawn instead of one picture; `destination` counts for nothing then.
    std::optional<Frames> frames = std::nullopt;
};

/// For `render` with plural options: every combination is drawn into a folder.
struct MatrixArguments : DocumentArguments {
    Matrix matrix = {};
    std::filesystem::path folder = {};
    /// Whether the index has a digest of each picture.
    bool hashes = false;
};

/// For `render` with models that are lines of a file: the matrix, which has no models, is drawn with each of them.
struct LinesArguments : MatrixArguments {
    std::string lines = {};  ///< "-" is standard input
    /// What in each model names its pictures; without it the line's number does.
    std::optional<ModelKey> key = std::nullopt;
};

/// For `tree`, `layout` and `targets`.
struct PrintArguments : DocumentArguments {
    Verb verb = Verb::tree;
};

struct ExplainArguments : DocumentArguments {
    /// The way to what is explained; without it everything is.
    std::optional<std::string> path = std::nullopt;
    TextFormat format = TextFormat::text;
};

/// What only `tavrin check` is told.
struct CheckOptions {
    CheckFormat format = CheckFormat::text;
    /// Whether fixes are made in the documents.
    bool fixes = false;
    /// Whether a warning makes the run fail.
    bool isStrict = false;
    bool showsNotes = false;
};

/// What a document is looked at with.
struct CheckedLook {
    std::optional<std::string> model = std::nullopt;
    std::vector<WidgetRoom> rooms = {};
    std::vector<Appearance> appearances = {};
};

struct CheckArguments : DocumentArguments {
    CheckOptions check = {};
    /// For each document, at least one.
    std::vector<std::vector<CheckedLook>> looks = {};
};

struct SnapshotArguments : DocumentArguments {
    Matrix matrix = {};
    SnapshotOptions snapshot = {};
};

/// For `render --jsonl`, which reads what to draw from standard input.
struct StreamArguments {
    /// What holds where a line says nothing else.
    DrawingOptions usual = {};
    /// Which of these the command line has said itself: they go before what lies beside a document.
    std::set<OptionName> said = {};
    /// The format where neither a line nor the suffix of its output tells.
    std::optional<PictureFormat> format = std::nullopt;
    /// Whether a picture that cannot be had is an error.
    bool failsOnMissing = false;
};

struct FetchArguments : DocumentArguments {};

using Arguments = std::variant<RenderArguments, MatrixArguments, LinesArguments, PrintArguments, ExplainArguments,
                               CheckArguments, SnapshotArguments, FetchArguments>;

/// Judges the values of a command that works on documents. Throws `UsageError`, and `IOError` for a folder that cannot
/// be read.
[[nodiscard]] Arguments readArguments(const Command& command);

/// Judges the values of `render --jsonl`. Throws `UsageError` and `OptionError`.
[[nodiscard]] StreamArguments readStreamArguments(const Command& command);

/// What a command says of how documents become widgets. Throws `UsageError` and `OptionError`.
[[nodiscard]] WidgetOptions readWidgetOptions(const Command& command);

/// The format that a command line asks for, whatever else is wrong with it.
[[nodiscard]] TextFormat errorFormatOf(std::span<const std::string> words);

}  // namespace tavrin::cli
